#include "app/gui/ActivationToken.hpp"

#include <algorithm>

namespace quillo {
namespace {

constexpr const char* newerName = "XDG_ACTIVATION_TOKEN";
constexpr const char* olderName = "DESKTOP_STARTUP_ID";
constexpr qsizetype longest = 1024;

}  // namespace

QString usableActivationToken(const QString& token) {
    const bool usable =
        token.size() <= longest && std::ranges::all_of(token, [](QChar c) { return c >= u' ' && c <= u'~'; });
    return usable ? token : QString();
}

QString takeActivationToken() {
    const QString newer = usableActivationToken(qEnvironmentVariable(newerName));
    const QString older = usableActivationToken(qEnvironmentVariable(olderName));
    qunsetenv(newerName);
    if (older.isEmpty()) qunsetenv(olderName);
    return newer.isEmpty() ? older : newer;
}

OfferedActivationToken::OfferedActivationToken(const QString& token) {
    if (!token.isEmpty()) qputenv(newerName, token.toLatin1());
}

OfferedActivationToken::~OfferedActivationToken() {
    qunsetenv(newerName);
    qunsetenv(olderName);
}

}  // namespace quillo
