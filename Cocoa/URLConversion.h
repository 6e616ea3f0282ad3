#pragma once

#import <Foundation/Foundation.h>

#include <vector>

#include "Platform/FileURL.hpp"

namespace quorva {

NSURL* foundationURL(const FileURL& url);

/// `url` must be a file URL.
FileURL fileURL(NSURL* url);

/// The file URLs among `urls`, which are all file URLs, that have a path, in order. One without
/// names nothing that could be acted on.
std::vector<FileURL> fileURLs(NSArray<NSURL*>* urls);

}  // namespace quorva
