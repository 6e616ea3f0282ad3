#import <Foundation/Foundation.h>
#include <expat.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#import "Cocoa/StringConversion.h"
#include "Platform/PropertyListSerialization.hpp"
#import "Simulator/GNUstep/MethodExchange.h"

namespace {

/// Keeps a few bytes from becoming more objects than there is memory for. The core counts exactly,
/// without the keys.
struct Allowance {
    bool admits(std::size_t objectCount, std::size_t byteCount) {
        objects += objectCount;
        bytes += byteCount;
        return objects <= 2 * quorva::propertyListValueLimit &&
               bytes <= quorva::propertyListByteLimit;
    }

    std::size_t objects = 0;
    std::size_t bytes = 0;
};

bool isTooDeep(std::size_t depth) {
    return depth > quorva::propertyListDepthLimit;
}

/// Reads the binary encoding. Nothing is read but from views of the file, each cut to its length
/// after that was checked; containers that the file shares are
/// shared.
class BinaryReader {
   public:
    explicit BinaryReader(std::string_view file) : file_(file) {}

    id root() {
        constexpr std::size_t headSize = 8;
        constexpr std::size_t trailerSize = 32;
        if (file_.size() < headSize + trailerSize || !file_.starts_with("bplist00")) {
            return nil;
        }
        const std::size_t end = file_.size() - trailerSize;
        const std::string_view trailer = file_.substr(end);
        offsetSize_ = number(trailer.substr(6, 1));
        referenceSize_ = number(trailer.substr(7, 1));
        const std::uint64_t objectCount = number(trailer.substr(8, 8));
        const std::uint64_t offsets = number(trailer.substr(24, 8));
        const auto isSize = [](std::size_t size) { return size >= 1 && size <= 8; };
        if (!isSize(offsetSize_) || !isSize(referenceSize_) || offsets > end || objectCount > end ||
            objectCount * offsetSize_ != end - offsets) {
            return nil;
        }
        objects_ = file_.substr(0, offsets);
        offsets_ = file_.substr(offsets, end - offsets);
        isEntered_.resize(objectCount);
        return object(number(trailer.substr(16, 8)), 1);
    }

   private:
    static std::uint64_t number(std::string_view bytes) {
        std::uint64_t value = 0;
        for (const char byte : bytes) {
            value = value << 8 | static_cast<unsigned char>(byte);
        }
        return value;
    }

    /// Cuts `count` units of `unitSize` from the beginning of `bytes`.
    static std::optional<std::string_view> cut(std::string_view& bytes, std::uint64_t count,
                                               std::size_t unitSize = 1) {
        if (count > bytes.size() / unitSize) {
            return std::nullopt;
        }
        const std::string_view units = bytes.substr(0, count * unitSize);
        bytes.remove_prefix(units.size());
        return units;
    }

    /// Cuts a number whose size is two to the power of `exponent`.
    static std::optional<std::string_view> cutNumber(std::string_view& bytes, unsigned exponent) {
        return exponent > 4 ? std::nullopt : cut(bytes, 1U << exponent);
    }

    /// Cuts the count of what follows a marker: its lower half or, where that is full, a number.
    static std::optional<std::uint64_t> cutCount(std::string_view& bytes, unsigned lowerHalf) {
        if (lowerHalf != 0xF) {
            return lowerHalf;
        }
        const auto marker = cut(bytes, 1);
        const auto count = marker && number(*marker) >> 4 == 1
                               ? cutNumber(bytes, number(*marker) & 0xF)
                               : std::nullopt;
        return count && count->size() <= 8 ? std::optional(number(*count)) : std::nullopt;
    }

    /// Nil when the object is malformed. A null object for what the core has no type for, and in
    /// place of a container that is nested too deeply.
    id object(std::uint64_t index, std::size_t depth) {
        if (index >= isEntered_.size() || !allowance_.admits(1, 0)) {
            return nil;
        }
        const std::uint64_t position = number(offsets_.substr(index * offsetSize_, offsetSize_));
        std::string_view bytes = objects_.substr(std::min(position, objects_.size()));
        const auto marker = cut(bytes, 1);
        const unsigned kind = marker ? static_cast<unsigned>(number(*marker)) >> 4 : 0xF;
        const unsigned lowerHalf = marker ? number(*marker) & 0xF : 0;
        switch (kind) {
            case 0x0:
                return lowerHalf == 0   ? static_cast<id>([NSNull null])
                       : lowerHalf == 8 ? [NSNumber numberWithBool:NO]
                       : lowerHalf == 9 ? [NSNumber numberWithBool:YES]
                                        : nil;
            case 0x1:
                return integer(cutNumber(bytes, lowerHalf));
            case 0x2:
                return real(cutNumber(bytes, lowerHalf));
            case 0x3: {
                NSNumber* seconds = lowerHalf == 3 ? real(cutNumber(bytes, 3)) : nil;
                return seconds != nil && std::isfinite(seconds.doubleValue)
                           ? [NSDate dateWithTimeIntervalSinceReferenceDate:seconds.doubleValue]
                           : nil;
            }
            case 0x8:  // a keyed archive's reference
                return cut(bytes, lowerHalf + 1) ? [NSNull null] : nil;
            default:
                const auto count = cutCount(bytes, lowerHalf);
                const auto units = count ? cut(bytes, *count, sizeOfUnit(kind)) : std::nullopt;
                return units ? countedObject(kind, *units, index, depth) : nil;
        }
    }

    static NSNumber* integer(std::optional<std::string_view> bytes) {
        if (!bytes) {
            return nil;
        }
        const std::uint64_t lower = number(*bytes);
        if (bytes->size() <= 8) {
            return [NSNumber numberWithLongLong:static_cast<std::int64_t>(lower)];
        }
        const auto upper = static_cast<std::int64_t>(number(bytes->substr(0, 8)));
        return upper == 0
                   ? [NSNumber numberWithUnsignedLongLong:lower]
                   : [NSNumber numberWithDouble:std::ldexp(upper, 64) + static_cast<double>(lower)];
    }

    static NSNumber* real(std::optional<std::string_view> bytes) {
        if (bytes && bytes->size() == 4) {
            const auto bits = static_cast<std::uint32_t>(number(*bytes));
            return [NSNumber numberWithFloat:std::bit_cast<float>(bits)];
        }
        return bytes && bytes->size() == 8
                   ? [NSNumber numberWithDouble:std::bit_cast<double>(number(*bytes))]
                   : nil;
    }

    [[nodiscard]] std::size_t sizeOfUnit(unsigned kind) const {
        switch (kind) {
            case utf16String:
                return sizeof(unichar);
            case array:
            case set:
                return referenceSize_;
            case dictionary:
                return 2 * referenceSize_;
            default:
                return 1;
        }
    }

    id countedObject(unsigned kind, std::string_view units, std::uint64_t index,
                     std::size_t depth) {
        switch (kind) {
            case data:
                return allowance_.admits(0, units.size())
                           ? [NSData dataWithBytes:units.data() length:units.size()]
                           : nil;
            case asciiString:
            case utf16String:
                return allowance_.admits(0, units.size() / sizeOfUnit(kind)) ? string(kind, units)
                                                                             : nil;
            case set:
                return [NSNull null];
            case array:
            case dictionary:
                if (isTooDeep(depth)) {
                    deepest_ = cutOff;
                    return [NSNull null];
                }
                return container(kind, units, index, depth);
            default:
                return nil;
        }
    }

    /// Makes a container once, and counts what is in it for each place where it appears.
    id container(unsigned kind, std::string_view references, std::uint64_t index,
                 std::size_t depth) {
        const auto found = containers_.find(index);
        if (found != containers_.end() && !isTooDeep(depth + found->second.height)) {
            const Container& made = found->second;
            deepest_ = std::max(deepest_, depth + made.height);
            return allowance_.admits(made.contents.objects, made.contents.bytes) ? made.object
                                                                                 : nil;
        }
        if (isEntered_[index]) {
            return nil;
        }
        isEntered_[index] = true;
        const Allowance before = allowance_;
        const std::size_t deepestBefore = std::exchange(deepest_, depth);
        id object =
            kind == array ? arrayOf(references, depth + 1) : dictionaryOf(references, depth + 1);
        isEntered_[index] = false;
        containers_[index] = {
            object,
            {allowance_.objects - before.objects, allowance_.bytes - before.bytes},
            deepest_ - depth};
        deepest_ = std::max(deepest_, deepestBefore);
        return object;
    }

    static NSString* string(unsigned kind, std::string_view units) {
        if (kind == utf16String) {
            std::vector<unichar> characters(units.size() / sizeof(unichar));
            for (std::size_t index = 0; index < characters.size(); ++index) {
                characters[index] = static_cast<unichar>(number(units.substr(2 * index, 2)));
            }
            return [NSString stringWithCharacters:characters.data() length:characters.size()];
        }
        const bool isASCII = std::ranges::none_of(units, [](char unit) { return unit & 0x80; });
        return isASCII ? [[[NSString alloc] initWithBytes:units.data()
                                                   length:units.size()
                                                 encoding:NSASCIIStringEncoding] autorelease]
                       : nil;
    }

    /// The object that the first of `references` leads to, which is cut off.
    id nextObject(std::string_view& references, std::size_t depth) {
        const std::uint64_t index = number(references.substr(0, referenceSize_));
        references.remove_prefix(referenceSize_);
        return object(index, depth);
    }

    NSArray* arrayOf(std::string_view references, std::size_t depth) {
        NSMutableArray* array = [NSMutableArray array];
        while (!references.empty()) {
            id element = nextObject(references, depth);
            if (element == nil) {
                return nil;
            }
            [array addObject:element];
        }
        return array;
    }

    NSDictionary* dictionaryOf(std::string_view keys, std::size_t depth) {
        NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
        std::string_view values = keys.substr(keys.size() / 2);
        while (!values.empty()) {
            id key = nextObject(keys, depth);
            id value = [key isKindOfClass:[NSString class]] ? nextObject(values, depth) : nil;
            if (value == nil) {
                return nil;
            }
            [dictionary setObject:value forKey:key];
        }
        return dictionary;
    }

    enum : unsigned {
        data = 0x4,
        asciiString = 0x5,
        utf16String = 0x6,
        array = 0xA,
        set = 0xC,
        dictionary = 0xD
    };

    struct Container {
        id object;
        Allowance contents;
        /// How many levels of containers are below it.
        std::size_t height;
    };

    std::string_view file_;
    std::string_view objects_;
    std::string_view offsets_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::vector<bool> isEntered_;
    std::unordered_map<std::uint64_t, Container> containers_;
    /// The depth of the deepest container since the last one was entered.
    std::size_t deepest_ = 0;
    /// Beyond any depth: what holds a container that was cut off may be whole elsewhere.
    static constexpr std::size_t cutOff = SIZE_MAX / 2;
    Allowance allowance_;
};

constexpr std::string_view whitespace = " \t\r\n";

/// Reads the XML encoding.
class XMLReader {
   public:
    id root(std::string_view file) {
        file.remove_prefix(std::min(file.find_first_not_of(whitespace), file.size()));
        if (parser_ == nullptr || file.size() > INT_MAX) {
            return nil;
        }
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(
            parser_.get(),
            [](void* self, const char* name, const char**) { reader(self).begin(name); },
            [](void* self, const char* name) { reader(self).end(name); });
        XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* text, int length) {
            reader(self).append({text, static_cast<std::size_t>(length)});
        });
        // Only hostile files declare entities.
        XML_SetEntityDeclHandler(
            parser_.get(), [](void* self, const char*, int, const char*, int, const char*,
                              const char*, const char*, const char*) { reader(self).fail(); });
        const int length = static_cast<int>(file.size());
        return XML_Parse(parser_.get(), file.data(), length, /*isFinal=*/1) == XML_STATUS_OK ? root_
                                                                                             : nil;
    }

   private:
    /// The element "plist", which holds one value, or a container.
    struct Level {
        id container;
        NSString* key;
    };

    static XMLReader& reader(void* self) { return *static_cast<XMLReader*>(self); }

    void fail() {
        XML_StopParser(parser_.get(), XML_FALSE);
        // An empty element would end yet.
        XML_SetElementHandler(parser_.get(), nullptr, nullptr);
    }

    void begin(std::string_view name) {
        if (isLeaf_ || levels_.empty() != (name == "plist")) {
            fail();
        } else if (name == "plist") {
            levels_.push_back({nil, nil});
        } else if (name == "array" || name == "dict") {
            id container =
                name == "array" ? [NSMutableArray array] : [NSMutableDictionary dictionary];
            add(isTooDeep(levels_.size()) ? [NSNull null] : container);
            levels_.push_back({container, nil});
        } else {
            isLeaf_ = true;
            text_.clear();
        }
    }

    void append(std::string_view text) {
        if (isLeaf_) {
            text_ += text;
        } else if (text.find_first_not_of(whitespace) != std::string_view::npos) {
            fail();
        }
    }

    void end(std::string_view name) {
        if (isLeaf_ && name == "key") {
            Level& level = levels_.back();
            if (level.key != nil || ![level.container isKindOfClass:[NSDictionary class]]) {
                return fail();
            }
            level.key = quorva::foundationString(text_);
        } else if (isLeaf_) {
            add(leaf(name));
        } else {
            if (levels_.back().key != nil) {
                return fail();
            }
            levels_.pop_back();
        }
        isLeaf_ = false;
    }

    void add(id value) {
        Level& level = levels_.back();
        // With the key that it may have.
        if (value == nil || !allowance_.admits(2, 0)) {
            fail();
        } else if (level.container == nil && root_ == nil) {
            root_ = value;
        } else if ([level.container isKindOfClass:[NSArray class]]) {
            [level.container addObject:value];
        } else if (level.key != nil) {
            [level.container setObject:value forKey:level.key];
            level.key = nil;
        } else {
            fail();
        }
    }

    /// Nil for what is malformed.
    [[nodiscard]] id leaf(std::string_view name) const {
        if (name == "string") {
            return quorva::foundationString(text_);
        }
        if (name == "true" || name == "false") {
            return text_.empty() ? [NSNumber numberWithBool:name == "true"] : nil;
        }
        if (name == "data") {
            const bool isEmpty = text_.find_first_not_of(whitespace) == std::string::npos;
            NSData* base64 = [NSData dataWithBytes:text_.data() length:text_.size()];
            return isEmpty
                       ? [NSData data]
                       : [[[NSData alloc]
                             initWithBase64EncodedData:base64
                                               options:NSDataBase64DecodingIgnoreUnknownCharacters]
                             autorelease];
        }
        if (name == "date") {
            std::tm time{};
            const char* end = strptime(text_.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time);
            return end == text_.c_str() + text_.size()
                       ? [NSDate dateWithTimeIntervalSince1970:static_cast<double>(timegm(&time))]
                       : nil;
        }
        return name == "integer" || name == "real" ? number(name == "integer") : nil;
    }

    [[nodiscard]] NSNumber* number(bool isInteger) const {
        std::string_view text = text_;
        text.remove_prefix(std::min(text.find_first_not_of(whitespace), text.size()));
        text = text.substr(0, text.find_last_not_of(whitespace) + 1);
        if (text.starts_with('+') && !text.starts_with("+-")) {
            text.remove_prefix(1);
        }
        if (!isInteger) {
            const auto value = numberWithText<double>(text);
            return value ? [NSNumber numberWithDouble:*value] : nil;
        }
        const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
        const int base = isHexadecimal ? 16 : 10;
        text.remove_prefix(isHexadecimal ? 2 : 0);
        if (const auto value = numberWithText<std::int64_t>(text, base)) {
            return [NSNumber numberWithLongLong:*value];
        }
        const auto value = numberWithText<std::uint64_t>(text, base);
        return value ? [NSNumber numberWithUnsignedLongLong:*value] : nil;
    }

    template <typename Number, typename... Base>
    static std::optional<Number> numberWithText(std::string_view text, Base... base) {
        Number value{};
        const char* const end = text.data() + text.size();
        const auto [position, error] = std::from_chars(text.data(), end, value, base...);
        return position == end && error == std::errc() ? std::optional(value) : std::nullopt;
    }

    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_{XML_ParserCreate(nullptr),
                                                                         XML_ParserFree};
    std::vector<Level> levels_;
    std::string text_;
    bool isLeaf_ = false;
    id root_ = nil;
    Allowance allowance_;
};

/// Whether GNUstep's recursive parser of the old text form can read `data`. Its own files are in
/// it.
bool isReadableText(NSData* data) {
    constexpr std::size_t sizeLimit = 1 << 20;
    constexpr std::ptrdiff_t bracketLimit = 4096;
    const std::string_view bytes(static_cast<const char*>(data.bytes), data.length);
    const auto isBracket = [](char character) { return character == '(' || character == '{'; };
    // What GNUstep would take for another encoding is not for it.
    const std::size_t first = bytes.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    return !bytes.starts_with("bplist") &&
           !bytes.substr(std::min(first, bytes.size())).starts_with('<') &&
           bytes.size() <= sizeLimit && !bytes.contains('\0') &&
           std::ranges::count_if(bytes, isBracket) <= bracketLimit &&
           [[[NSString alloc] initWithData:data encoding:NSUTF8StringEncoding] autorelease] != nil;
}

}  // namespace

@interface NSPropertyListSerialization (Simulator)
+ (id)simulatorPropertyListWithData:(NSData*)data
                            options:(NSPropertyListReadOptions)options
                             format:(NSPropertyListFormat*)format
                              error:(NSError**)error;
@end

/// macOS: reads any file without harm, and returns an error for what is not a property list.
/// GNUstep's reader raises, returns nil without an error, or ends the process. The old text form,
/// which GNUstep's own files are in, is left to it.
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
    NSPropertyListFormat found = NSPropertyListXMLFormat_v1_0;
    id object = nil;
    @autoreleasepool {
        if (bytes.starts_with("bplist")) {
            found = NSPropertyListBinaryFormat_v1_0;
            object = BinaryReader(bytes).root();
        } else {
            object = XMLReader().root(bytes);
        }
        if (object == nil && isReadableText(data)) {
            @try {
                NSError* textError = nil;
                object = [self simulatorPropertyListWithData:data
                                                     options:options
                                                      format:&found
                                                       error:&textError];
            } @catch (NSException*) {
                object = nil;
            }
        }
        [object retain];
    }
    if (format != nullptr) {
        *format = found;
    }
    if (object == nil && error != nullptr) {
        *error = [NSError
            errorWithDomain:NSCocoaErrorDomain
                       code:3840
                   userInfo:[NSDictionary dictionaryWithObject:@"The data is not a property list."
                                                        forKey:NSLocalizedDescriptionKey]];
    }
    return [object autorelease];
}

@end
