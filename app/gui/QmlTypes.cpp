#include "app/gui/QmlTypes.hpp"

#include "app/gui/DesktopMapPicture.hpp"

namespace quillo {

void registerItems() {
    static const bool once = [] {
        qmlRegisterType<DesktopMapPicture>(coreModule, 1, 0, "DesktopMapPicture");
        return true;
    }();
    static_cast<void>(once);
}

}  // namespace quillo
