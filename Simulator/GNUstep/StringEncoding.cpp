#include <cstdlib>

namespace {

/// macOS: file names and console text are UTF-8 whatever the locale. GNUstep takes the locale's
/// encoding, unless this variable names another before its first string is made.
[[gnu::constructor]] void useUTF8() {
    setenv("GNUSTEP_STRING_ENCODING", "NSUTF8StringEncoding", /*overwrite=*/1);
}

}  // namespace
