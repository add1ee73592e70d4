// How counts, dates and lists read in the interface.
#pragma once
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>
#include <string_view>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

QString qt(std::string_view utf8);
/// A name or title on one line, cut where no view is wide enough for more.
QString line(std::string_view utf8);
/// "1,234".
QString number(std::int64_t count);
/// "1 window", "3 windows", with a space that does not break.
QString counted(std::int64_t count, const QString& noun);
/// Of a card: "08:52", "Yesterday", "Tuesday", "12 Nov", "12 Nov 2025"; the time with twelve or
/// twenty-four hours, as the person's locale has it.
QString shortDate(Instant instant, Instant now);
/// Of the detail: "12 Nov 2026 at 09:14", "today at 08:52".
QString longDate(Instant instant, Instant now);
/// "and 9,800 more"; empty for none.
QString andMore(std::int64_t count);
/// "Mail, Notes, Safari, and 12 more": the names of the applications.
QString applicationNames(const WorkspaceSnapshot& snapshot);
/// With a dot between them; a line breaks behind the dot.
QString joined(const QStringList& parts);
/// "7 apps · 7 windows · 2 displays · 4 desktops"; desktops only where they are known.
QString snapshotCounts(const WorkspaceSnapshot& snapshot);

}  // namespace quillo
