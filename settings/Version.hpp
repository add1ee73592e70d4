// Which Quillo this is.
#pragma once

namespace quillo {

/// Number and commit as `--version` prints them: "0.1.0 (768c0677dc04)", or "0.1.0 (commit unknown)" where
/// neither the sources' own repository nor a source package told it.
const char* versionWithCommit();

}  // namespace quillo
