// Data rows out of an array of structures, each named by its member "name".
#ifndef ORLUNE_TESTS_SUPPORT_ROWS_H
#define ORLUNE_TESTS_SUPPORT_ROWS_H

#include <QtTest>

template <class Rows>
void addRows(const Rows& rows)
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < int(std::size(rows)); ++i)
        QTest::newRow(rows[i].name) << i;
}

// The row that the running test function is at.
template <class Rows>
const auto& currentRow(const Rows& rows)
{
    QFETCH(int, row);
    return rows[row];
}

#endif
