#pragma once

// GNUstep looks for this header to learn where the blocks runtime is. Debian's has its own name.
#include <Block.h>
