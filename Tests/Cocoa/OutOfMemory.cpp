#include "Tests/Cocoa/OutOfMemory.hpp"

#include <new>

void throwOutOfMemory() {
    throw std::bad_alloc();
}
