#include "Simulator/GNUstep/PropertyListCheck.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "Platform/PropertyListSerialization.hpp"

namespace simulator {
namespace {

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t trailerSize = 32;

/// The object table of a binary property list. Every read is checked against the file's bounds.
class ObjectTable {
 public:
    static std::optional<ObjectTable> withBytes(std::string_view bytes) {
        if (bytes.size() < binaryMagic.size() + trailerSize) {
            return std::nullopt;
        }
        ObjectTable table(bytes);
        const std::size_t trailer = bytes.size() - trailerSize;
        table.offsetSize_ = static_cast<unsigned char>(bytes[trailer + 6]);
        table.referenceSize_ = static_cast<unsigned char>(bytes[trailer + 7]);
        table.objectCount_ = table.number(trailer + 8, 8).value_or(0);
        table.root_ = table.number(trailer + 16, 8).value_or(0);
        table.offsets_ = table.number(trailer + 24, 8).value_or(0);
        const bool sizesAreValid = table.offsetSize_ >= 1 && table.offsetSize_ <= 8 &&
                                   table.referenceSize_ >= 1 && table.referenceSize_ <= 8;
        if (!sizesAreValid || table.offsets_ > trailer ||
            table.objectCount_ > (trailer - table.offsets_) / table.offsetSize_ ||
            table.root_ >= table.objectCount_) {
            return std::nullopt;
        }
        return table;
    }

    [[nodiscard]] std::size_t objectCount() const { return objectCount_; }
    [[nodiscard]] std::size_t root() const { return root_; }

    /// What the walk needs to know of an object.
    struct Object {
        /// The upper half of the marker.
        unsigned kind;
        /// Where the bytes of a text or data, or the references of a container, begin.
        std::size_t position;
        /// How many bytes a text or data has; none for the others, whose size is small.
        std::size_t byteCount;
        /// How many references a container has, and how many of them, at the beginning, are keys.
        std::size_t referenceCount;
        std::size_t keyCount;
    };

    /// Absent when the object does not lie within the file, and for a set, which is no value of a
    /// property list and which libplist takes for an array.
    [[nodiscard]] std::optional<Object> object(std::size_t index) const {
        const auto offset = number(offsets_ + (index * offsetSize_), offsetSize_);
        if (!offset || *offset >= bytes_.size()) {
            return std::nullopt;
        }
        const unsigned marker = static_cast<unsigned char>(bytes_[*offset]);
        Object object{marker >> 4, *offset + 1, 0, 0, 0};
        if (object.kind == set) {
            return std::nullopt;
        }
        const std::size_t unitSize = sizeOfUnit(object.kind);
        if (unitSize == 0) {
            return object;
        }
        std::size_t count = marker & 0xF;
        if (count == 0xF) {
            const auto sizeMarker = number(object.position, 1);
            if (!sizeMarker || *sizeMarker >> 4 != 1 || (*sizeMarker & 0xF) > 3) {
                return std::nullopt;
            }
            const std::size_t size = std::size_t{1} << (*sizeMarker & 0xF);
            const auto largeCount = number(object.position + 1, size);
            if (!largeCount) {
                return std::nullopt;
            }
            object.position += 1 + size;
            count = *largeCount;
        }
        if (count > (bytes_.size() - std::min(object.position, bytes_.size())) / unitSize) {
            return std::nullopt;
        }
        if (object.kind >= array) {
            object.referenceCount = count * unitSize / referenceSize_;
            object.keyCount = object.kind == dictionary ? count : 0;
        } else {
            object.byteCount = count * unitSize;
        }
        return object;
    }

    [[nodiscard]] std::optional<std::size_t> reference(const Object& object,
                                                       std::size_t index) const {
        const auto target = number(object.position + (index * referenceSize_), referenceSize_);
        return target && *target < objectCount_ ? target : std::nullopt;
    }

    /// Whether libplist would cut `object`: a text of ASCII, at its first NUL. One of UTF-16 it
    /// reads whole.
    [[nodiscard]] bool isCut(const Object& object) const {
        return object.kind == asciiText &&
               bytes_.substr(object.position, object.byteCount).contains('\0');
    }

    /// Whether the object at `index`, which is not cut, is a text without a NUL; libplist ends the
    /// process for any other key.
    [[nodiscard]] bool isKey(std::size_t index) const {
        const auto key = object(index);
        if (!key || key->kind != utf16Text) {
            return key && key->kind == asciiText;
        }
        const std::string_view text = bytes_.substr(key->position, key->byteCount);
        for (std::size_t unit = 0; unit < text.size(); unit += 2) {
            if (text[unit] == '\0' && text[unit + 1] == '\0') {
                return false;
            }
        }
        return true;
    }

 private:
    static constexpr unsigned data = 0x4;
    static constexpr unsigned asciiText = 0x5;
    static constexpr unsigned utf16Text = 0x6;
    static constexpr unsigned array = 0xA;
    static constexpr unsigned set = 0xC;
    static constexpr unsigned dictionary = 0xD;

    explicit ObjectTable(std::string_view bytes) : bytes_(bytes) {}

    /// How many bytes each of the counted units of such an object takes; 0 when it has none.
    [[nodiscard]] std::size_t sizeOfUnit(unsigned kind) const {
        switch (kind) {
            case data:
            case asciiText:
                return 1;
            case utf16Text:
                return 2;
            case array:
                return referenceSize_;
            case dictionary:
                return 2 * referenceSize_;
            default:
                return 0;
        }
    }

    /// The big-endian number of `size` bytes at `position`.
    [[nodiscard]] std::optional<std::size_t> number(std::size_t position, std::size_t size) const {
        if (position > bytes_.size() || size > bytes_.size() - position) {
            return std::nullopt;
        }
        std::size_t value = 0;
        for (const char byte : bytes_.substr(position, size)) {
            value = (value << 8) | static_cast<unsigned char>(byte);
        }
        return value;
    }

    std::string_view bytes_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::size_t objectCount_ = 0;
    std::size_t root_ = 0;
    std::size_t offsets_ = 0;
};

/// What is known of an object: how much it unfolds to, and how deep.
struct Measure {
    enum class State : std::uint8_t { unseen, entered, measured };

    std::uint32_t values = 1;
    std::uint32_t bytes = 0;
    std::uint16_t depth = 1;
    State state = State::unseen;
};

class Walk {
 public:
    explicit Walk(const ObjectTable& table) : table_(table), measures_(table.objectCount()) {}

    bool staysWithinLimits() {
        if (!enter(table_.root())) {
            return false;
        }
        while (!path_.empty()) {
            if (!(path_.back().next < path_.back().object.referenceCount ? follow() : leave())) {
                return false;
            }
        }
        return true;
    }

 private:
    /// An object whose references are being followed.
    struct Entered {
        std::size_t index;
        ObjectTable::Object object;
        std::size_t next;
    };

    bool enter(std::size_t index) {
        const auto object = table_.object(index);
        if (!object || object->byteCount > quorva::propertyListByteLimit ||
            path_.size() == quorva::propertyListDepthLimit || table_.isCut(*object)) {
            return false;
        }
        measures_[index].state = Measure::State::entered;
        measures_[index].bytes = static_cast<std::uint32_t>(object->byteCount);
        path_.push_back({index, *object, 0});
        return true;
    }

    /// Follows the next reference of the last entered object. Every reference of a reachable object
    /// unfolds to a value or a key, so their number is bounded like the values.
    bool follow() {
        Entered& parent = path_.back();
        const auto child = table_.reference(parent.object, parent.next);
        if (!child || ++followed_ > 2 * quorva::propertyListValueLimit) {
            return false;
        }
        switch (measures_[*child].state) {
            case Measure::State::unseen:
                return enter(*child);
            case Measure::State::entered:
                return false;
            case Measure::State::measured:
                return add(parent, *child);
        }
        return false;
    }

    /// Adds the measure of `child`, which the next reference of `parent` leads to, and passes on.
    bool add(Entered& parent, std::size_t child) {
        const bool isKey = parent.next < parent.object.keyCount;
        Measure& measure = measures_[parent.index];
        measure.values += isKey ? 0 : measures_[child].values;
        measure.bytes += measures_[child].bytes;
        measure.depth =
            std::max(measure.depth, static_cast<std::uint16_t>(measures_[child].depth + 1));
        ++parent.next;
        return measure.values <= quorva::propertyListValueLimit &&
               measure.bytes <= quorva::propertyListByteLimit &&
               measure.depth <= quorva::propertyListDepthLimit && (!isKey || table_.isKey(child));
    }

    bool leave() {
        const std::size_t index = path_.back().index;
        measures_[index].state = Measure::State::measured;
        path_.pop_back();
        return path_.empty() || add(path_.back(), index);
    }

    const ObjectTable& table_;
    std::vector<Measure> measures_;
    std::vector<Entered> path_;
    std::size_t followed_ = 0;
};

constexpr std::string_view whitespace = " \t\r\n";

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// libplist moves all text behind a character reference, once for each: so many bytes in all.
constexpr std::size_t numericReferenceWork = 1'000'000'000;

/// How long the tag, comment or character data is that begins `bytes`.
std::size_t markupLength(std::string_view bytes) {
    std::string_view end = ">";
    if (bytes.starts_with("<!--")) {
        end = "-->";
    } else if (bytes.starts_with("<![CDATA[")) {
        end = "]]>";
    }
    const std::size_t position = bytes.find(end);
    return position == std::string_view::npos ? bytes.size() : position + end.size();
}

/// Moves the ampersand that begins `bytes` to `readable`, with the name behind it written out.
void appendReference(std::string& readable, std::string_view& bytes) {
    static constexpr std::pair<std::string_view, std::string_view> characters[] = {
        {"&amp;", "<![CDATA[&]]>"},
        {"&lt;", "<![CDATA[<]]>"},
        {"&gt;", ">"},
        {"&quot;", "\""},
        {"&apos;", "'"}};
    for (const auto& [reference, text] : characters) {
        if (bytes.starts_with(reference)) {
            readable += text;
            bytes.remove_prefix(reference.size());
            return;
        }
    }
    readable += '&';
    bytes.remove_prefix(1);
}

}  // namespace

PropertyListEncoding propertyListEncoding(std::string_view bytes) {
    if (bytes.starts_with("bplist")) {
        return PropertyListEncoding::binary;
    }
    if (bytes.starts_with(byteOrderMark)) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    bytes.remove_prefix(std::min(bytes.find_first_not_of(whitespace), bytes.size()));
    const bool isXML =
        bytes.starts_with("<?xml") || bytes.starts_with("<!") || bytes.starts_with("<plist");
    return isXML ? PropertyListEncoding::xml : PropertyListEncoding::other;
}

bool isReadableBinaryPropertyList(std::string_view bytes) {
    const auto table = ObjectTable::withBytes(bytes);
    return table && bytes.starts_with(binaryMagic) && Walk(*table).staysWithinLimits();
}

std::optional<std::string> readableXMLPropertyList(std::string_view bytes) {
    const std::size_t end = bytes.find_last_not_of(whitespace);
    if (end == std::string_view::npos || !bytes.substr(0, end + 1).ends_with("</plist>") ||
        bytes.contains('\0')) {
        return std::nullopt;
    }
    if (bytes.starts_with(byteOrderMark)) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    std::string readable;
    readable.reserve(bytes.size());
    std::size_t depth = 0;
    std::size_t numericReferences = 0;
    bool isBehindKey = false;
    while (!bytes.empty()) {
        const std::size_t position = std::min(bytes.find_first_of("<&"), bytes.size());
        readable += bytes.substr(0, position);
        bytes.remove_prefix(position);
        if (bytes.starts_with('&')) {
            numericReferences += bytes.starts_with("&#") ? 1 : 0;
            appendReference(readable, bytes);
            continue;
        }
        const std::string_view markup = bytes.substr(0, markupLength(bytes));
        const bool isContainer = markup.starts_with("<dict") || markup.starts_with("<array");
        if (isContainer && !markup.ends_with("/>") && ++depth > quorva::propertyListDepthLimit) {
            return std::nullopt;
        }
        if ((markup.starts_with("</dict") || markup.starts_with("</array")) && depth > 0) {
            --depth;
        }
        if (!markup.starts_with("<!")) {
            if (isBehindKey && markup.starts_with("</dict")) {
                return std::nullopt;
            }
            isBehindKey = markup.starts_with("</key") || markup == "<key/>";
        }
        readable += markup;
        bytes.remove_prefix(markup.size());
    }
    const bool isQuick = numericReferences <= numericReferenceWork / readable.size();
    return isQuick ? std::optional(std::move(readable)) : std::nullopt;
}

bool isReadableTextPropertyList(std::string_view bytes) {
    constexpr std::ptrdiff_t bracketLimit = 4096;
    const auto isBracket = [](char character) { return character == '(' || character == '{'; };
    return !bytes.contains('\0') && std::ranges::count_if(bytes, isBracket) <= bracketLimit;
}

}  // namespace simulator
