#include "cli/Output.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <nlohmann/json.hpp>

void COutput::Write(std::ostream& out, bool json) const {
    if (json) {
        nlohmann::ordered_json document = nlohmann::ordered_json::array();
        for (const auto& record : m_records) {
            nlohmann::ordered_json object = nlohmann::ordered_json::object();
            for (std::size_t i = 0; i < record.size() && i < m_columns.size(); ++i) {
                if (const auto* number = std::get_if<std::int64_t>(&record[i]))
                    object[m_columns[i].name] = *number;
                else
                    object[m_columns[i].name] = platform::ToUtf8(std::get<std::wstring>(record[i]));
            }
            document.push_back(std::move(object));
        }
        // Invalid bytes cannot occur: every text went through ToUtf8.
        out << document.dump(2) << '\n';
        return;
    }
    for (const auto& record : m_records) {
        for (std::size_t i = 0; i < record.size(); ++i) {
            if (i > 0)
                out << '\t';
            if (const auto* number = std::get_if<std::int64_t>(&record[i]))
                out << *number;
            else
                out << platform::ToUtf8(TsvField(std::get<std::wstring>(record[i])));
        }
        out << '\n';
    }
}
