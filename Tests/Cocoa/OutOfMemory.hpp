#pragma once

/// Throws `std::bad_alloc`, from plain C++: an `.mm` file can't on every system.
[[noreturn]] void throwOutOfMemory();
