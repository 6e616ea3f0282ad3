#import <AppKit/AppKit.h>

#include "Simulator/ContainingApplication/EventLoop.hpp"

void simulator::runEventLoop() {
    [[NSApplication sharedApplication] run];
}
