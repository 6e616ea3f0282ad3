#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <string>
#include <vector>

#include "QuorvaFinderExtension/Menu.hpp"

/// The floor: what a menu request and a click cost when nothing is decided in between. The same
/// calls of the system and of the frameworks, each made once where once is enough, with whatever
/// they are given prepared beforehand.
namespace benchmarks {

struct FloorItem;

struct FloorMenu {
    std::string title;
    std::vector<FloorItem> items;
};

/// A line of the diagnostic log.
struct FloorLine {
    NSString* message;
    std::string line;
};

class Floor {
   public:
    /// Will make `menu`, and log `menuMessages` on the way, or `clickMessages` when clicked.
    Floor(const quorva::Menu& menu, const std::vector<std::string>& menuMessages,
          const std::vector<std::string>& clickMessages);
    ~Floor();

    /// Everything before the menu is rendered: selection, target, settings files, titles, log.
    void prepareMenu();

    /// The whole of a menu request.
    NSMenu* menu(id target);

    /// The whole of a click.
    void click();

   private:
    FloorMenu menu_;
    std::vector<NSString*> keysNotShown_;
    std::vector<FloorLine> menuLines_;
    std::vector<FloorLine> clickLines_;
};

/// The messages of the diagnostic log in the home folder, in order.
std::vector<std::string> loggedMessages();

/// Where the extension finds its settings and keeps its log.
std::string settingsFolder();

}  // namespace benchmarks
