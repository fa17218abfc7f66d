#include "window/WindowGeometry.h"

#include "platform/Registry.h"

#include <algorithm>

namespace {

const platform::RegistryKey SettingsKey{platform::RegistryRoot::CurrentUser, "SOFTWARE\\Brenvia\\Settings"};

int ReadSigned(const char* name) {
    return static_cast<int>(platform::ReadRegistryDword(SettingsKey, name).value_or(0));
}

void WriteSigned(const char* name, int value) {
    platform::WriteRegistryDword(SettingsKey, name, static_cast<uint32_t>(value));
}

constexpr QSize GraspableTitle(120, 24);

} // namespace

std::optional<QRect> ReadWindowGeometry() {
    const QRect rectangle(ReadSigned("StartX"), ReadSigned("StartY"), ReadSigned("Width"),
                          ReadSigned("Height"));
    if (rectangle.width() == 0 || rectangle.height() == 0)
        return {};
    return rectangle;
}

void StoreWindowGeometry(const QRect& rectangle) {
    WriteSigned("StartX", rectangle.x());
    WriteSigned("StartY", rectangle.y());
    WriteSigned("Width", rectangle.width());
    WriteSigned("Height", rectangle.height());
}

QRect MovedOntoScreen(QRect rectangle, const QList<QRect>& screens) {
    const QRect title(rectangle.topLeft(), QSize(rectangle.width(), GraspableTitle.height()));
    const bool graspable = std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        const QRect shown = screen.intersected(title);
        return shown.width() >= std::min(GraspableTitle.width(), title.width()) &&
               shown.height() == title.height();
    });
    const auto shownOn = [&rectangle](const QRect& screen) {
        const QRect shown = screen.intersected(rectangle);
        return qint64(shown.width()) * shown.height();
    };
    const auto most = std::max_element(screens.begin(), screens.end(), [&](const QRect& a, const QRect& b) {
        return shownOn(a) < shownOn(b);
    });
    if (most == screens.end())
        return rectangle;
    const QRect screen = *most;
    if (graspable && rectangle.size().boundedTo(screen.size()) == rectangle.size())
        return rectangle;
    rectangle.setSize(rectangle.size().boundedTo(screen.size()));
    rectangle.moveLeft(std::clamp(rectangle.left(), screen.left(), screen.right() + 1 - rectangle.width()));
    rectangle.moveTop(std::clamp(rectangle.top(), screen.top(), screen.bottom() + 1 - rectangle.height()));
    return rectangle;
}
