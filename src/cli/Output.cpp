#include "cli/Output.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <algorithm>

namespace {

template <class... F> struct SOverloaded : F... { using F::operator()...; };
template <class... F> SOverloaded(F...) -> SOverloaded<F...>;

// Characters as a terminal shows them: UTF-8 continuation bytes take no column.
std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

nlohmann::ordered_json COutput::Json(const CField& field) {
    return std::visit(
        SOverloaded{
            [](std::int64_t number) { return nlohmann::ordered_json(number); },
            [](const std::wstring& text) { return nlohmann::ordered_json(platform::ToUtf8(text)); },
            [](bool flag) { return nlohmann::ordered_json(flag); },
            [](const std::vector<std::int64_t>& ids) { return nlohmann::ordered_json(ids); },
            [](const std::vector<std::wstring>& texts) {
                nlohmann::ordered_json list = nlohmann::ordered_json::array();
                for (const auto& text : texts)
                    list.push_back(platform::ToUtf8(text));
                return list;
            },
            [](const STwoForms& two) { return two.json; },
        },
        field);
}

std::string COutput::Text(const CField& field) {
    const auto joined = [](const auto& items, const wchar_t* separator) {
        std::wstring text;
        for (const auto& item : items) {
            if (!text.empty())
                text += separator;
            if constexpr (std::is_same_v<std::decay_t<decltype(item)>, std::wstring>)
                text += item;
            else
                text += std::to_wstring(item);
        }
        return text;
    };
    const std::wstring text =
        std::visit(SOverloaded{
                       [](std::int64_t number) { return std::to_wstring(number); },
                       [](const std::wstring& value) { return value; },
                       [](bool flag) { return std::wstring(flag ? L"1" : L"0"); },
                       [&](const std::vector<std::int64_t>& ids) { return joined(ids, L","); },
                       [&](const std::vector<std::wstring>& texts) { return joined(texts, L"|"); },
                       [](const STwoForms& two) { return two.text; },
                   },
                   field);
    return platform::ToUtf8(TsvField(text));
}

void COutput::Write(std::ostream& out, bool json) const {
    if (json) {
        nlohmann::ordered_json document = nlohmann::ordered_json::array();
        if (m_json) {
            document = *m_json;
        } else {
            for (const auto& record : m_records) {
                nlohmann::ordered_json object = nlohmann::ordered_json::object();
                for (std::size_t i = 0; i < record.size() && i < m_columns.size(); ++i)
                    object[m_columns[i].name] = Json(record[i]);
                document.push_back(std::move(object));
            }
        }
        // Invalid bytes cannot occur: every text went through ToUtf8.
        out << document.dump(2) << '\n';
        return;
    }
    for (const auto& record : m_records) {
        for (std::size_t i = 0; i < record.size(); ++i) {
            if (i > 0)
                out << '\t';
            out << Text(record[i]);
        }
        out << '\n';
    }
}

void COutput::WriteTable(std::ostream& out) const {
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> header;
    for (const auto& column : m_columns) {
        std::string name = column.name;
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
        header.push_back(name);
    }
    rows.push_back(header);
    for (const auto& record : m_records) {
        std::vector<std::string> row;
        for (const auto& field : record)
            row.push_back(Text(field));
        rows.push_back(std::move(row));
    }
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()), 0);
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], Width(row[i]));
    }
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size())
                line += std::string(widths[i] - Width(row[i]) + 2, ' ');
        }
        out << line << '\n';
    }
}
