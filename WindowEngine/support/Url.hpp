// Absolute addresses, kept to the letter.
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

/// An absolute URL. The exact string is kept and compared: a tab address with characters that RFC 3986
/// forbids (| or ^ in a query) survives a round trip unchanged.
class Url {
  public:
    /// Absent for an empty string, one without a scheme (RFC 3986 3.1), one with control characters,
    /// white space or invalid UTF-8.
    static std::optional<Url> parse(std::string_view text);

    /// file: URL of an absolute path, percent-encoded where RFC 3986 asks for it; a directory keeps or
    /// gets its trailing slash when `directory` is set. `path` must be absolute and hold no NUL byte.
    static Url file(std::string_view path, bool directory = false);

    const std::string& string() const { return text_; }
    std::string scheme() const;               // lower-cased, without the colon
    std::optional<std::string> host() const;  // percent-encoded as written, without user, port and brackets;
                                              // absent where there is no authority or it is empty
    /// The host percent-decoded and as asciiDomain() spells it, so that two spellings of one name are equal;
    /// of an escape that cannot be decoded as it is.
    std::optional<std::string> asciiHost() const;
    bool isWeb() const;   // scheme http or https: what a browser may be given
    bool isFile() const;  // scheme file with an empty authority or localhost, without user or port
    /// Decoded path of a file URL, without a trailing slash except for "/"; absent for any other URL,
    /// for bad percent escapes and for a decoded NUL byte.
    std::optional<std::string> filePath() const;
    /// A file URL with "." and ".." resolved, doubled and trailing slashes removed and one spelling of
    /// percent escapes; any other URL as it is.
    Url standardized() const;

    bool operator==(const Url&) const = default;

  private:
    explicit Url(std::string text) : text_(std::move(text)) {}
    std::string text_;
};

}  // namespace quillo
