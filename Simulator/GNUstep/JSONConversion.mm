#import "Simulator/GNUstep/JSONConversion.h"

#import "Cocoa/StringConversion.h"

using nlohmann::json;

std::string simulator::descriptionOfObject(id object) {
    return quorva::utf8String([object description]);
}

json simulator::jsonWithFoundationObject(id object, std::string (*otherwise)(id)) {
    if ([object isKindOfClass:[NSString class]]) {
        return quorva::utf8String(object);
    }
    if ([object isKindOfClass:[NSNumber class]]) {
        NSNumber* number = object;
        if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
            return static_cast<bool>(number.boolValue);
        }
        switch (number.objCType[0]) {
            case 'f':
            case 'd':
                return number.doubleValue;
            case 'L':
            case 'Q':
                return number.unsignedLongLongValue;
            default:
                return number.longLongValue;
        }
    }
    if ([object isKindOfClass:[NSArray class]]) {
        json array = json::array();
        for (id element in static_cast<NSArray*>(object)) {
            array.push_back(jsonWithFoundationObject(element, otherwise));
        }
        return array;
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        json members = json::object();
        for (id key in static_cast<NSDictionary*>(object)) {
            const std::string name =
                [key isKindOfClass:[NSString class]] ? quorva::utf8String(key) : otherwise(key);
            members[name] = jsonWithFoundationObject([object objectForKey:key], otherwise);
        }
        return members;
    }
    return object == nil || object == [NSNull null] ? json() : json(otherwise(object));
}

id simulator::foundationObjectWithJSON(const json& value) {
    if (value.is_array()) {
        NSMutableArray* const array = [NSMutableArray arrayWithCapacity:value.size()];
        for (const json& element : value) {
            [array addObject:foundationObjectWithJSON(element)];
        }
        return array;
    }
    if (value.is_object()) {
        NSMutableDictionary* const dictionary =
            [NSMutableDictionary dictionaryWithCapacity:value.size()];
        for (const auto& [key, element] : value.items()) {
            [dictionary setObject:foundationObjectWithJSON(element)
                           forKey:quorva::foundationString(key)];
        }
        return dictionary;
    }
    if (value.is_string()) {
        return quorva::foundationString(value.get_ref<const std::string&>());
    }
    if (value.is_boolean()) {
        return [NSNumber numberWithBool:value.get<bool>()];
    }
    if (value.is_number_float()) {
        return [NSNumber numberWithDouble:value.get<double>()];
    }
    if (!value.is_number()) {
        return [NSNull null];
    }
    return value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX
               ? [NSNumber numberWithUnsignedLongLong:value.get<std::uint64_t>()]
               : [NSNumber numberWithLongLong:value.get<std::int64_t>()];
}
