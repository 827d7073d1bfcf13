#pragma once

#include <QTest>

#include <initializer_list>

namespace norva::test {

// One row of a QTest table whose columns are all texts, on one line: textRow("name", {"a", "b"}).
inline void textRow(const char* name, std::initializer_list<const char*> texts)
{
    QTestData& row = QTest::newRow(name);
    for (const char* text : texts)
        row << QString::fromUtf8(text);
}

} // namespace norva::test
