#pragma once

#include <QtTest>

#include <tuple>
#include <type_traits>
#include <vector>

/** Text in a row of a table: a literal, in UTF-8, or a string. */
struct TextCell {
    TextCell(const char *pText)
        : text(QString::fromUtf8(pText))
    {
    }
    TextCell(const QString &string)
        : text(string)
    {
    }
    QString text;
};

/** Adds rows to the table of a data-driven test: a name, and a value for each column. */
template <class... Column>
class TableRows {
    template <class Value>
    using Cell = std::conditional_t<std::is_same_v<Value, QString>, TextCell, Value>;

public:
    void operator()(const TextCell &name, const Cell<Column> &...values) const
    {
        QTestData &row = QTest::newRow(qPrintable(name.text));
        (put(row, values), ...);
    }

private:
    template <class Value>
    static void put(QTestData &row, const Value &value)
    {
        if constexpr (std::is_same_v<Value, TextCell>)
            row << value.text;
        else
            row << value;
    }
};

/** Rows of which the name says it all. */
inline void namedRows(std::initializer_list<const char *> names)
{
    QTest::addColumn<int>("none");
    for (const char *pName : names)
        QTest::newRow(pName) << 0;
}

inline QString rowName()
{
    return QString::fromUtf8(QTest::currentDataTag());
}

/** The columns of the table that was made last: that of the test that runs. */
inline std::vector<const char *> g_columnNames;

/** Gives the test that is being prepared columns of these types and names. */
template <class... Column, class... Name>
TableRows<Column...> columns(Name... names)
{
    g_columnNames = {names...};
    (QTest::addColumn<Column>(names), ...);
    return {};
}

/** The values of the row that the test runs with, in the order of the columns and of their types. */
template <class... Column>
std::tuple<Column...> currentRow()
{
    auto name = g_columnNames.cbegin();
    return std::tuple<Column...>{*static_cast<Column *>(QTest::qData(*name++, qMetaTypeId<Column>()))...};
}
