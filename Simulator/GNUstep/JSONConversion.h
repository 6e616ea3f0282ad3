#pragma once

#import <Foundation/Foundation.h>

#include <nlohmann/json.hpp>
#include <string>

/// Foundation's values as JSON and back.
namespace simulator {

/// `object` as a string.
std::string descriptionOfObject(id object);

/// `object` as JSON; nil is null. `otherwise` makes a string of whatever JSON has no form for, and
/// of keys that are not strings.
nlohmann::json jsonWithFoundationObject(id object,
                                        std::string (*otherwise)(id) = descriptionOfObject);

/// The string, number, array, dictionary or null that `value` is.
id foundationObjectWithJSON(const nlohmann::json& value);

}  // namespace simulator
