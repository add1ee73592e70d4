#include "ctl/Table.hpp"

#include <algorithm>
#include <numeric>

#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 8;  // a column is cut to this width, never below

std::string joined(const Output& output, const std::vector<Cell>& cells,
                   const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string text = fitted(cells[i].text, widths[i]);
        const bool last = i + 1 == cells.size();
        line += output.painted(cells[i].style, last ? text : padded(text, widths[i]));
        if (!last) line.append(gap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace

std::vector<std::size_t> Table::widths(std::size_t terminal) const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < header_.size(); ++i) {
        std::size_t width = columns(header_[i]);
        for (const auto& row : rows_) width = std::max(width, columns(row[i].text));
        widths.push_back(std::max<std::size_t>(width, 1));
    }
    const std::size_t gaps = gap * (widths.size() - 1);
    while (terminal > 0 && std::accumulate(widths.begin(), widths.end(), gaps) > terminal) {
        const auto widest = std::ranges::max_element(widths);
        if (*widest <= narrowest) break;
        --*widest;
    }
    return widths;
}

void Table::print(Output& output) const {
    const std::vector<std::size_t> columnWidths = widths(output.width());
    std::vector<Cell> titles;
    for (const std::string& title : header_) titles.push_back({title, Style::dim});
    output.line(joined(output, titles, columnWidths));
    for (const auto& row : rows_) output.line(joined(output, row, columnWidths));
}

}  // namespace quillo::ctl
