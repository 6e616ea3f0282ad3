#import <Foundation/Foundation.h>
#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#import "Simulator/GNUstep/MethodExchange.h"
#include "Simulator/GNUstep/PropertyListCheck.hpp"

namespace {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Memory>
using Allocated = std::unique_ptr<Memory, FreeMemory>;

using Node = std::unique_ptr<void, decltype(&plist_free)>;

/// Text as it stands. GNUstep drops a byte order mark from the beginning of UTF-8, so the text is
/// put behind a space first. Nil when the bytes are no UTF-8.
NSString* foundationString(std::string_view text) {
    const std::string behindASpace = " " + std::string(text);
    NSString* string = [[[NSString alloc] initWithBytes:behindASpace.data()
                                                 length:behindASpace.size()
                                               encoding:NSUTF8StringEncoding] autorelease];
    return [string substringFromIndex:1];
}

id foundationObject(plist_t node);

NSArray* foundationArray(plist_t node) {
    NSMutableArray* array = [NSMutableArray array];
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const Allocated<void> owner(iterator);
    plist_t element = nullptr;
    for (plist_array_next_item(node, iterator, &element); element != nullptr;
         plist_array_next_item(node, iterator, &element)) {
        id object = foundationObject(element);
        if (object == nil) {
            return nil;
        }
        [array addObject:object];
    }
    return array;
}

NSDictionary* foundationDictionary(plist_t node) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const Allocated<void> owner(iterator);
    while (true) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        const Allocated<char> keyOwner(key);
        if (value == nullptr) {
            return dictionary;
        }
        id object = foundationObject(value);
        NSString* string = key == nullptr ? nil : foundationString(key);
        if (object == nil || string == nil) {
            return nil;
        }
        [dictionary setObject:object forKey:string];
    }
}

/// The object that `node` stands for; nil when it or anything in it is nothing that a property list
/// holds.
id foundationObject(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_DICT:
            return foundationDictionary(node);
        case PLIST_ARRAY:
            return foundationArray(node);
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* text = plist_get_string_ptr(node, &length);
            return foundationString({text, length});
        }
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return [NSNumber numberWithBool:value != 0];
        }
        case PLIST_UINT: {
            std::uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return [NSNumber numberWithLongLong:static_cast<long long>(value)];
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return [NSNumber numberWithDouble:value];
        }
        case PLIST_DATE: {
            std::int32_t seconds = 0;
            std::int32_t microseconds = 0;
            plist_get_date_val(node, &seconds, &microseconds);
            return [NSDate dateWithTimeIntervalSinceReferenceDate:seconds + microseconds / 1e6];
        }
        case PLIST_DATA: {
            std::uint64_t length = 0;
            const char* bytes = plist_get_data_ptr(node, &length);
            return [NSData dataWithBytes:bytes length:length];
        }
        case PLIST_KEY:
        case PLIST_UID:
        case PLIST_NONE:
            return nil;
    }
    return nil;
}

/// The object that libplist makes of `bytes` with `parse`.
template <typename Parse>
id parsedObject(std::string_view bytes, Parse parse) {
    plist_t root = nullptr;
    parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    const Node owner(root, plist_free);
    return root == nullptr ? nil : foundationObject(root);
}

id objectWithBytes(std::string_view bytes, simulator::PropertyListEncoding encoding) {
    if (encoding == simulator::PropertyListEncoding::binary) {
        return simulator::isReadableBinaryPropertyList(bytes) ? parsedObject(bytes, plist_from_bin)
                                                              : nil;
    }
    const auto readable = simulator::readableXMLPropertyList(bytes);
    return readable ? parsedObject(*readable, plist_from_xml) : nil;
}

}  // namespace

@interface NSPropertyListSerialization (Simulator)
+ (id)simulatorPropertyListWithData:(NSData*)data
                            options:(NSPropertyListReadOptions)options
                             format:(NSPropertyListFormat*)format
                              error:(NSError**)error;
@end

/// macOS: reads any file without harm, and answers an error for what is no property list. GNUstep's
/// reader raises, answers nil without an error, or ends the process. So libplist reads the binary
/// and the XML encoding; the old text form, which macOS reads too, is left to GNUstep.
@implementation NSPropertyListSerialization (Simulator)

+ (void)load {
    simulator::exchangeMethods(object_getClass(self),
                               @selector(propertyListWithData:options:format:error:),
                               @selector(simulatorPropertyListWithData:options:format:error:));
}

+ (id)simulatorPropertyListWithData:(NSData*)data
                            options:(NSPropertyListReadOptions)options
                             format:(NSPropertyListFormat*)format
                              error:(NSError**)error {
    const std::string_view bytes(static_cast<const char*>(data.bytes), data.length);
    const simulator::PropertyListEncoding encoding = simulator::propertyListEncoding(bytes);
    id object = nil;
    if (encoding == simulator::PropertyListEncoding::other) {
        // GNUstep knows encodings of its own behind other first bytes.
        NSString* text = [[[NSString alloc] initWithData:data
                                                encoding:NSUTF8StringEncoding] autorelease];
        const bool isText = text != nil && simulator::isReadableTextPropertyList(bytes);
        @try {
            NSError* textError = nil;
            object = isText ? [self simulatorPropertyListWithData:data
                                                          options:options
                                                           format:format
                                                            error:&textError]
                            : nil;
        } @catch (NSException*) {
            // Answered below like every other text that is no property list.
        }
    } else {
        object = objectWithBytes(bytes, encoding);
        if (format != nullptr) {
            *format = encoding == simulator::PropertyListEncoding::binary
                          ? NSPropertyListBinaryFormat_v1_0
                          : NSPropertyListXMLFormat_v1_0;
        }
    }
    if (object == nil && error != nullptr) {
        *error = [NSError
            errorWithDomain:NSCocoaErrorDomain
                       code:3840
                   userInfo:[NSDictionary dictionaryWithObject:@"The data is no property list."
                                                        forKey:NSLocalizedDescriptionKey]];
    }
    return object;
}

@end
