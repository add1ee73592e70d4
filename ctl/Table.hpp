// Rows of cells in aligned columns.
#pragma once
#include <string>
#include <vector>

#include "ctl/Output.hpp"

namespace quillo::ctl {

struct Cell {
    std::string text;  // printable
    Style style = Style::plain;
};

class Table {
  public:
    explicit Table(std::vector<std::string> header) : header_(std::move(header)) {}

    /// As many cells as the header has.
    void row(std::vector<Cell> cells) { rows_.push_back(std::move(cells)); }
    bool empty() const { return rows_.empty(); }
    /// On a terminal the widest columns are cut until a row fits on one line.
    void print(Output& output) const;

  private:
    std::vector<std::size_t> widths(std::size_t terminal) const;

    std::vector<std::string> header_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace quillo::ctl
