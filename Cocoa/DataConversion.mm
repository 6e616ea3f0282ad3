#import "Cocoa/DataConversion.h"

NSData* quorva::foundationData(const Data& data) {
    return [NSData dataWithBytes:data.data() length:data.size()];
}

quorva::Data quorva::bytes(NSData* data) {
    const std::span<const std::byte> span(static_cast<const std::byte*>(data.bytes), data.length);
    return {span.begin(), span.end()};
}
