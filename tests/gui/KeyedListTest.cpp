// Lists that change by differences: what a view hears leads exactly to the new rows, and rows that can stay
// do.
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSet>
#include <numeric>
#include <random>

#include "app/gui/KeyedList.hpp"

namespace quillo {
namespace {

std::vector<RowList::Row> rows(const std::vector<int>& numbers, int version) {
    std::vector<RowList::Row> rows;
    for (const int number : numbers) rows.push_back({QString::number(number), {version}});
    return rows;
}

TEST(KeyedList, AnyListBecomesAnyOtherAndWhatKeepsItsOrderStays) {
    RowList list({"version"});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    int moved = 0;
    QObject::connect(&list, &QAbstractItemModel::rowsRemoved,
                     [&](const QModelIndex&, int first, int last) { moved += last - first + 1; });
    QObject::connect(&list, &QAbstractItemModel::modelReset, [] { ADD_FAILURE() << "focus is lost"; });
    std::mt19937 random(7);
    std::vector<int> numbers;
    for (int version = 0; version < 300; ++version) {
        const std::vector<int> before = numbers;
        std::erase_if(numbers, [&](int) { return random() % 4 == 0; });
        const bool shuffled = version % 3 == 0;
        if (shuffled) std::shuffle(numbers.begin(), numbers.end(), random);
        const std::size_t kept = numbers.size();
        for (int i = 0; i < 3; ++i) {
            const auto at = static_cast<std::ptrdiff_t>(random() % (numbers.size() + 1));
            numbers.insert(numbers.begin() + at, version * 3 + i);
        }
        moved = 0;
        list.setRows(rows(numbers, version));
        ASSERT_EQ(list.count(), static_cast<int>(numbers.size()));
        for (int row = 0; row < list.count(); ++row) {
            const QModelIndex index = list.index(row);
            EXPECT_EQ(list.data(index, Qt::UserRole).toInt(), numbers[static_cast<std::size_t>(row)]);
            EXPECT_EQ(list.data(index, Qt::UserRole + 1).toInt(), version);
        }
        if (!shuffled)
            EXPECT_EQ(moved, static_cast<int>(before.size() - kept)) << "only what went is removed";
    }
    int moves = 0;
    QObject::connect(&list, &QAbstractItemModel::rowsMoved, [&] { ++moves; });
    const QPersistentModelIndex first = list.index(0), last = list.index(list.count() - 1);
    std::rotate(numbers.begin(), numbers.begin() + 1, numbers.end() - 1);
    list.setRows(rows(numbers, 0));
    EXPECT_EQ(first.data(Qt::UserRole).toInt(), *(numbers.end() - 2));
    EXPECT_EQ(last.data(Qt::UserRole).toInt(), numbers.back());
    EXPECT_EQ(moves, 1);
}

TEST(KeyedList, ManyRowsTakeFewSteps) {
    RowList list({"version"});
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    int steps = 0;
    for (const auto signal : {&QAbstractItemModel::rowsRemoved, &QAbstractItemModel::rowsInserted})
        QObject::connect(&list, signal, [&] { ++steps; });
    QObject::connect(&list, &QAbstractItemModel::rowsMoved, [&] { ++steps; });
    QObject::connect(&list, &QAbstractItemModel::modelReset, [] { ADD_FAILURE() << "focus is lost"; });
    std::mt19937 random(7);
    std::vector<int> all(240);
    std::iota(all.begin(), all.end(), 0);
    for (int version = 0; version < 20; ++version) {
        std::vector<int> numbers = all;
        std::ranges::shuffle(numbers, random);
        numbers.resize(random() % 241);
        steps = 0;
        list.setRows(rows(numbers, version));
        EXPECT_LE(steps, 64);
        ASSERT_EQ(list.count(), static_cast<int>(numbers.size()));
        for (int row = 0; row < list.count(); ++row)
            EXPECT_EQ(list.index(row).data(Qt::UserRole).toInt(), numbers[static_cast<std::size_t>(row)]);
    }
}

}  // namespace
}  // namespace quillo
