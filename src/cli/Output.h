// What a command prints: records of fields, as TAB-separated lines or as one
// JSON document.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

using CField = std::variant<std::int64_t, std::wstring>;

struct SColumn {
    std::string name;
};

class COutput {
public:
    explicit COutput(std::vector<SColumn> columns) : m_columns(std::move(columns)) {}
    void Add(std::vector<CField> record) { m_records.push_back(std::move(record)); }
    // One record per line with fields separated by one TAB, or with `json` an
    // array of objects named by the columns. TABs and line breaks inside a
    // text are written as \t, \n and \r.
    void Write(std::ostream& out, bool json) const;

private:
    std::vector<SColumn> m_columns;
    std::vector<std::vector<CField>> m_records;
};
