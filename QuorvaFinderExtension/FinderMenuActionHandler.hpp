#pragma once

#include <string_view>

#include "QuorvaFinderExtension/Menu.hpp"

namespace quorva {

/// Carries a click to the containing application: resolves the item, queues a record, posts a
/// notification and sees to it that the application runs.
class FinderMenuActionHandler {
 public:
    /// The distributed notification that announces a new record.
    static constexpr std::string_view actionQueuedNotificationName =
        "app.ferrolin.Quorva.ActionQueued";

    static constexpr std::string_view containingApplicationIdentifier = "app.ferrolin.Quorva";

    FinderMenuActionHandler(const FinderMenuActionHandler&) = delete;
    FinderMenuActionHandler& operator=(const FinderMenuActionHandler&) = delete;

    /// The one handler of the process.
    static const FinderMenuActionHandler& shared();

    /// Handles a click on `sender`, an item of `menu`, with the selection and target of the moment
    /// or, where Finder gives none, those of the menu request.
    ///
    /// What goes wrong is written to the diagnostic log. No notification is posted for a record
    /// that was not written; once it is written, the click has succeeded, whatever becomes of the
    /// notification and the launch. May throw `std::bad_alloc` before that, and only before.
    void performFeatureChild(const MenuItem& sender, const Menu& menu) const;

 private:
    FinderMenuActionHandler() = default;

    void openContainingApp() const;
};

}  // namespace quorva
