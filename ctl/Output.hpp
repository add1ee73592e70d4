// Where results, complaints and progress go. Results are text for a person or, with --json, one JSON value a
// line; both on standard output. Complaints go to standard error.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/JsonLine.hpp"

namespace quillo::ctl {

enum class Style { plain, bold, dim, good, warning, bad };

class Output {
  public:
    Output(bool json, bool quiet);
    /// Keeps JSON lines instead of printing them.
    explicit Output(std::vector<std::string>& kept) : kept_(&kept), json_(true) {}

    bool json() const { return json_; }
    /// Columns of the terminal that standard output is; 0 when it is none.
    std::size_t width() const { return width_; }

    /// Nobody wants to hear of what went well.
    bool quiet() const { return quiet_; }
    /// What was done, for a person who wants to hear it.
    void done(std::string_view text);
    /// A whole JSON document, which ends with a line feed: as it is or, with --json, on one line.
    void document(std::string_view json);

    /// One line; every line is handed on at once, so that a pipe sees a long run as it happens.
    void line(std::string_view text);
    void value(JsonLine value);
    /// "quilloctl: text" on standard error.
    void complain(std::string_view text);
    /// A line that the next output replaces; only a terminal gets it.
    void progress(std::string_view text);

    /// Whether somebody is there to answer: both streams are a terminal's, and text is wanted.
    bool canAsk() const;
    /// Puts a question that Return, or the end of input, answers with no. Ctrl-C ends the program, as the
    /// system does it.
    bool confirmed(std::string_view question);

    /// Colours only on a terminal, and not where NO_COLOR is set to anything.
    std::string painted(Style style, std::string_view text) const;

    /// Whoever read standard output has had enough.
    bool readerLeft() const { return readerLeft_; }

    /// False when not everything could be written (a full disk).
    bool finish();

  private:
    void clearProgress();

    void write(std::string_view text);

    std::vector<std::string>* kept_ = nullptr;
    bool json_ = false;
    bool quiet_ = false;
    bool colours_ = false;
    bool progressShown_ = false;
    bool written_ = true;
    bool readerLeft_ = false;
    std::size_t width_ = 0;
};

}  // namespace quillo::ctl
