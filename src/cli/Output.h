// What a command prints: records of fields, as TAB-separated lines or as one
// JSON document (docs/json.md).
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

// A value written one way in a TAB-separated line and another in JSON: a
// drawing's size as "12 KB" and as a number of bytes.
struct STwoForms {
    std::wstring text;
    nlohmann::ordered_json json;
};

// A number, a text, a yes/no (0 or 1 in a line, a JSON boolean), a list of
// ids (comma-separated, a JSON array), a list of texts ("|"-separated, a
// JSON array) or a value of two forms.
using CField = std::variant<std::int64_t, std::wstring, bool, std::vector<std::int64_t>,
                            std::vector<std::wstring>, STwoForms>;

struct SColumn {
    std::string name;
};

class COutput {
public:
    explicit COutput(std::vector<SColumn> columns) : m_columns(std::move(columns)) {}
    void Add(std::vector<CField> record) { m_records.push_back(std::move(record)); }
    // A JSON document of its own shape (a tree, one object) printed with
    // --json instead of the array of records.
    void SetJson(nlohmann::ordered_json document) { m_json = std::move(document); }
    // One record per line with fields separated by one TAB, or with `json` an
    // array of objects named by the columns. A backslash, a TAB and a line
    // break inside a text are written as \\, \t, \n and \r.
    void Write(std::ostream& out, bool json) const;
    // The same lines with a header of the column names and every column as
    // wide as its widest value: a table for a person at a terminal.
    void WriteTable(std::ostream& out) const;

    // The JSON value of one field.
    static nlohmann::ordered_json Json(const CField& field);
    // The text of one field in a line, escaped.
    static std::string Text(const CField& field);

private:
    std::vector<SColumn> m_columns;
    std::vector<std::vector<CField>> m_records;
    std::optional<nlohmann::ordered_json> m_json;
};
