#import <Foundation/Foundation.h>
#include <expat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#import "Cocoa/StringConversion.h"
#include "Platform/PropertyListSerialization.hpp"
#import "Simulator/GNUstep/MethodExchange.h"

namespace {

/// Puts together what a reader meets, one object after the other. Nothing is added after what is
/// malformed or beyond the limits.
class ObjectBuilder {
   public:
    /// The only object, nil when something was malformed.
    [[nodiscard]] id object() const {
        NSArray* objects = levels_.front().container;
        return isMalformed_ || objects.count != 1 ? nil : [objects objectAtIndex:0];
    }

    [[nodiscard]] bool isMalformed() const { return isMalformed_; }
    void fail() { isMalformed_ = true; }

    /// Whether the next object is the key of an entry.
    [[nodiscard]] bool expectsKey() const {
        const Level& level = levels_.back();
        return level.key == nil && [level.container isKindOfClass:[NSDictionary class]];
    }

    /// Whether a container added now is replaced with a null object.
    [[nodiscard]] bool isFull() const { return levels_.size() > quorva::propertyListDepthLimit; }

    /// Nil is malformed.
    void add(id object) {
        const bool isKey = expectsKey();
        const bool isString = [object isKindOfClass:[NSString class]];
        valueCount_ += isKey ? 0 : 1;
        byteCount_ += isString || [object isKindOfClass:[NSData class]] ? [object length] : 0;
        isMalformed_ = isMalformed_ || object == nil || (isKey && !isString) ||
                       valueCount_ > quorva::propertyListValueLimit ||
                       byteCount_ > quorva::propertyListByteLimit;
        Level& level = levels_.back();
        if (isMalformed_) {
            return;
        }
        if (isKey) {
            level.key = object;
        } else if (level.key != nil) {
            [level.container setObject:object forKey:level.key];
            level.key = nil;
        } else {
            [level.container addObject:object];
        }
    }

    /// A container with what counts in it, for each place where it appears.
    struct Container {
        id object = nil;
        std::size_t valueCount = 0;
        std::size_t byteCount = 0;
        /// How many levels it takes, more than there are where something was too deep.
        std::size_t height = 1;
    };

    /// Adds a container once more. Returns false when there it is too deep.
    bool add(const Container& container) {
        if (levels_.size() - 1 + container.height > quorva::propertyListDepthLimit) {
            return false;
        }
        add(container.object);
        valueCount_ += container.valueCount;
        byteCount_ += container.byteCount;
        raise(container.height);
        return true;
    }

    /// Adds a container. Up to the call of `end` that goes with it, objects are added to it.
    void begin(id container) {
        add(isFull() ? [NSNull null] : container);
        levels_.push_back({container, nil, valueCount_, byteCount_});
    }

    Container end() {
        const Level level = levels_.back();
        isMalformed_ = isMalformed_ || level.key != nil;
        levels_.pop_back();
        raise(level.height);
        return {level.container, valueCount_ - level.valuesBefore, byteCount_ - level.bytesBefore,
                level.height};
    }

    /// Adds a null object in place of a container that is too deep.
    void cutOff() {
        add([NSNull null]);
        raise(quorva::propertyListDepthLimit);
    }

   private:
    struct Level {
        /// A mutable array, or a mutable dictionary with the key of the next value.
        id container;
        NSString* key = nil;
        std::size_t valuesBefore = 0;
        std::size_t bytesBefore = 0;
        std::size_t height = 1;
    };

    /// The last level holds a container of that height.
    void raise(std::size_t height) {
        levels_.back().height = std::max(levels_.back().height, height + 1);
    }

    std::vector<Level> levels_{{.container = [NSMutableArray array]}};
    std::size_t valueCount_ = 0;
    std::size_t byteCount_ = 0;
    bool isMalformed_ = false;
};

/// Reads the binary encoding. Nothing is read but from views of the file, each cut to its length
/// after that was checked.
class BinaryReader {
   public:
    id object(std::string_view file) {
        constexpr std::size_t trailerSize = 32;
        if (file.size() < trailerSize || !file.starts_with("bplist00")) {
            return nil;
        }
        std::string_view trailer = file.substr(file.size() - trailerSize);
        file.remove_suffix(trailerSize);
        cut(trailer, 6);
        offsetSize_ = number(cut(trailer, 1));
        referenceSize_ = number(cut(trailer, 1));
        const std::uint64_t objectCount = number(cut(trailer, 8));
        const std::uint64_t root = number(cut(trailer, 8));
        const std::uint64_t offsets = number(cut(trailer, 8));
        if (offsetSize_ == 0 || referenceSize_ == 0 || offsets > file.size() ||
            objectCount > file.size() || objectCount * offsetSize_ != file.size() - offsets) {
            return nil;
        }
        objects_ = file.substr(0, offsets);
        offsets_ = file.substr(offsets);
        isEntered_.resize(objectCount);
        add(root);
        return builder_.object();
    }

   private:
    static std::uint64_t number(std::string_view bytes) {
        std::uint64_t value = 0;
        for (const char byte : bytes) {
            value = value << 8 | static_cast<unsigned char>(byte);
        }
        return value;
    }

    /// Cuts `count` units of `unitSize` from the beginning of `bytes`; none when there are fewer.
    std::string_view cut(std::string_view& bytes, std::uint64_t count, std::size_t unitSize = 1) {
        if (count > bytes.size() / unitSize) {
            builder_.fail();
            return {};
        }
        const std::string_view units = bytes.substr(0, count * unitSize);
        bytes.remove_prefix(units.size());
        return units;
    }

    /// Cuts the count of what follows a marker: its lower half or, where that is full, a number.
    std::uint64_t cutCount(std::string_view& bytes, unsigned lowerHalf) {
        if (lowerHalf != 0xF) {
            return lowerHalf;
        }
        const std::uint64_t marker = number(cut(bytes, 1));
        if (marker < 0x10 || marker > 0x13) {
            builder_.fail();
        }
        return builder_.isMalformed() ? 0 : number(cut(bytes, 1ULL << (marker & 0xF)));
    }

    /// Adds the object of that index: a null object for what the core has no type for.
    void add(std::uint64_t index) {
        if (builder_.isMalformed() || index >= isEntered_.size()) {
            return builder_.fail();
        }
        const std::uint64_t position = number(offsets_.substr(index * offsetSize_, offsetSize_));
        std::string_view bytes = objects_.substr(std::min(position, objects_.size()));
        const std::uint64_t marker = number(cut(bytes, 1));
        const unsigned lowerHalf = marker & 0xF;
        switch (marker >> 4) {
            case 0x0:
                return builder_.add(lowerHalf == 0 ? static_cast<id>([NSNull null])
                                    : lowerHalf == 8 || lowerHalf == 9
                                        ? [NSNumber numberWithBool:lowerHalf == 9]
                                        : nil);
            case 0x1:
                return builder_.add(integer(cut(bytes, 1ULL << lowerHalf)));
            case 0x2:
                return builder_.add(real(cut(bytes, 1ULL << lowerHalf)));
            case 0x3: {
                const double seconds = real(cut(bytes, 1ULL << lowerHalf)).doubleValue;
                return builder_.add(lowerHalf == 3 && std::isfinite(seconds)
                                        ? [NSDate dateWithTimeIntervalSinceReferenceDate:seconds]
                                        : nil);
            }
            case 0x4: {
                const std::string_view data = cut(bytes, cutCount(bytes, lowerHalf));
                return builder_.add([NSData dataWithBytes:data.data() length:data.size()]);
            }
            case 0x5:
                return builder_.add(asciiString(cut(bytes, cutCount(bytes, lowerHalf))));
            case 0x6: {
                const std::uint64_t count = cutCount(bytes, lowerHalf);
                return builder_.add(utf16String(cut(bytes, count, sizeof(unichar))));
            }
            case 0x8:  // a keyed archive's reference
                cut(bytes, lowerHalf + 1);
                return builder_.add([NSNull null]);
            case 0xA:
                return addContainer(
                    index, [NSMutableArray array], {},
                    cut(bytes, cutCount(bytes, lowerHalf), referenceSize_));
            case 0xC:  // a set
                cut(bytes, cutCount(bytes, lowerHalf), referenceSize_);
                return builder_.add([NSNull null]);
            case 0xD: {
                const std::uint64_t count = cutCount(bytes, lowerHalf);
                const std::string_view keys = cut(bytes, count, referenceSize_);
                const std::string_view values = cut(bytes, count, referenceSize_);
                return addContainer(index, [NSMutableDictionary dictionary], keys, values);
            }
            default:
                builder_.fail();
        }
    }

    static NSNumber* integer(std::string_view bytes) {
        const std::uint64_t lower = number(bytes);
        if (bytes.size() <= 8) {
            return [NSNumber numberWithLongLong:static_cast<std::int64_t>(lower)];
        }
        const auto upper = static_cast<std::int64_t>(number(bytes.substr(0, 8)));
        return bytes.size() > 16 ? nil
               : upper == 0
                   ? [NSNumber numberWithUnsignedLongLong:lower]
                   : [NSNumber numberWithDouble:std::ldexp(upper, 64) + static_cast<double>(lower)];
    }

    static NSNumber* real(std::string_view bytes) {
        const std::uint64_t bits = number(bytes);
        return bytes.size() == 8 ? [NSNumber numberWithDouble:std::bit_cast<double>(bits)]
               : bytes.size() == 4
                   ? [NSNumber numberWithFloat:std::bit_cast<float>(static_cast<unsigned>(bits))]
                   : nil;
    }

    static NSString* asciiString(std::string_view units) {
        return std::ranges::any_of(units, [](char unit) { return unit & 0x80; })
                   ? nil
                   : [[[NSString alloc] initWithBytes:units.data()
                                               length:units.size()
                                             encoding:NSASCIIStringEncoding] autorelease];
    }

    static NSString* utf16String(std::string_view units) {
        std::vector<unichar> characters(units.size() / sizeof(unichar));
        for (std::size_t index = 0; index < characters.size(); ++index) {
            characters[index] = static_cast<unichar>(number(units.substr(2 * index, 2)));
        }
        return [NSString stringWithCharacters:characters.data() length:characters.size()];
    }

    /// Adds a container of what the references lead to. An array has no keys.
    void addContainer(std::uint64_t index, id container, std::string_view keys,
                      std::string_view values) {
        if (builder_.isFull()) {
            return builder_.cutOff();
        }
        if (const auto made = containers_.find(index);
            made != containers_.end() && builder_.add(made->second)) {
            return;
        }
        if (isEntered_[index]) {
            return builder_.fail();
        }
        isEntered_[index] = true;
        builder_.begin(container);
        while (!values.empty() && !builder_.isMalformed()) {
            if (!keys.empty()) {
                add(number(cut(keys, 1, referenceSize_)));
            }
            add(number(cut(values, 1, referenceSize_)));
        }
        containers_[index] = builder_.end();
        isEntered_[index] = false;
    }

    ObjectBuilder builder_;
    std::string_view objects_;
    std::string_view offsets_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    /// Which containers are being added: none of them may be in itself.
    std::vector<bool> isEntered_;
    std::unordered_map<std::uint64_t, ObjectBuilder::Container> containers_;
};

constexpr std::string_view whitespace = " \t\r\n";

/// Reads the XML encoding.
class XMLReader {
   public:
    id object(std::string_view file) {
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
        return XML_Parse(parser_.get(), file.data(), length, /*isFinal=*/1) == XML_STATUS_OK
                   ? builder_.object()
                   : nil;
    }

    /// Where and why the last reading ended early.
    [[nodiscard]] NSString* problem() const {
        const XML_Error code = XML_GetErrorCode(parser_.get());
        return [NSString
            stringWithFormat:@"On line %lu: %s.",
                             static_cast<unsigned long>(XML_GetCurrentLineNumber(parser_.get())),
                             code == XML_ERROR_ABORTED
                                 ? "something that a property list does not have there"
                                 : XML_ErrorString(code)];
    }

   private:
    static XMLReader& reader(void* self) { return *static_cast<XMLReader*>(self); }

    void fail() {
        builder_.fail();
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    void begin(std::string_view name) {
        if (isLeaf_ || isInside_ == (name == "plist")) {
            return fail();
        }
        isInside_ = true;
        if (name == "array" || name == "dict") {
            builder_.begin(name == "array" ? [NSMutableArray array]
                                           : [NSMutableDictionary dictionary]);
        } else {
            isLeaf_ = name != "plist";
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
        if (isLeaf_ && builder_.expectsKey() == (name == "key")) {
            builder_.add(leaf(name));
        } else if (isLeaf_) {
            builder_.fail();
        } else if (name != "plist" && !builder_.isMalformed()) {
            builder_.end();
        }
        isLeaf_ = false;
        if (builder_.isMalformed()) {
            fail();
        }
    }

    /// Nil for what is malformed.
    [[nodiscard]] id leaf(std::string_view name) const {
        if (name == "string" || name == "key") {
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
        const char* const text = text_.c_str();
        const int base = text_.find_first_of("xX") == std::string::npos ? 10 : 16;
        char* end = nullptr;
        errno = 0;
        NSNumber* number =
            !isInteger ? [NSNumber numberWithDouble:std::strtod(text, &end)]
            : text_.contains('-')
                ? [NSNumber numberWithLongLong:std::strtoll(text, &end, base)]
                : [NSNumber numberWithUnsignedLongLong:std::strtoull(text, &end, base)];
        const bool isWhole =
            std::string_view(end).find_first_not_of(whitespace) == std::string_view::npos;
        // A real too small for full precision is one all the same.
        const bool isInRange = errno == 0 || (!isInteger && std::isfinite(number.doubleValue));
        return end != text && isWhole && isInRange ? number : nil;
    }

    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_{XML_ParserCreate(nullptr),
                                                                         XML_ParserFree};
    ObjectBuilder builder_;
    std::string text_;
    bool isInside_ = false;
    bool isLeaf_ = false;
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
    // A class whose methods were exchanged before its first message is never initialized.
    [self class];
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
    NSString* problem = nil;
    @autoreleasepool {
        if (bytes.starts_with("bplist")) {
            found = NSPropertyListBinaryFormat_v1_0;
            object = BinaryReader().object(bytes);
        } else {
            XMLReader reader;
            object = reader.object(bytes);
            problem = [bytes.starts_with('<') ? reader.problem() : nil retain];
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
                   userInfo:[NSDictionary
                                dictionaryWithObjectsAndKeys:@"The data is not a property list.",
                                                             NSLocalizedDescriptionKey, problem,
                                                             @"NSDebugDescription", nil]];
    }
    [problem release];
    return [object autorelease];
}

@end
