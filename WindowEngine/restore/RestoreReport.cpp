#include "WindowEngine/restore/RestoreReport.hpp"

namespace quillo {
namespace {

struct Count {
    RestoreReport::Totals& totals;

    void operator()(const RestoreReport::createdDesktops& status) const {
        totals.createdDesktops += status.count;
    }
    void operator()(const RestoreReport::opened& status) const { totals.opened += status.count; }
    void operator()(const RestoreReport::note&) const {}
    void operator()(const RestoreReport::skipped&) const { ++totals.skipped; }
    void operator()(const RestoreReport::failed&) const { ++totals.failed; }
    void operator()(const RestoreReport::restored&) const { ++totals.restored; }
    void operator()(const RestoreReport::adjusted&) const {
        ++totals.restored;
        ++totals.adjusted;
    }
    void operator()(const RestoreReport::launched&) const { ++totals.launched; }
};

}  // namespace

RestoreReport::Totals RestoreReport::totals() const {
    Totals totals;
    for (const Item& item : items) std::visit(Count{totals}, item.status);
    return totals;
}

}  // namespace quillo
