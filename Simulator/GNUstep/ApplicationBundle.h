#pragma once

#import <Foundation/Foundation.h>

namespace simulator {

/// The information property list of the bundle at `path`, nil when it has none that can be read.
NSDictionary* infoDictionaryOfBundle(NSString* path);

/// The path of the bundle that this program lies in, nil when it lies in none.
NSString* ownBundlePath();

/// The path of the bundle whose executable is the one at `executablePath`, as in
/// `Name.app/Contents/MacOS/Name`. nil when it lies in no bundle.
NSString* bundlePathOfExecutable(NSString* executablePath);

/// The executable of the bundle at `path`, nil when the bundle does not exist, names no executable,
/// or the executable can't be run.
NSString* executablePathOfBundle(NSString* path);

}  // namespace simulator
