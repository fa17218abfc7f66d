#pragma once

#include <sstream>
#include <string>
#include <vector>

/// What a name server sends, put together by hand.
namespace names {

inline std::string Word(int value) {
    return {static_cast<char>(value >> 8), static_cast<char>(value & 255)};
}

inline std::string Name(const std::string& dotted) {
    std::string labels;
    std::istringstream parts(dotted);
    for (std::string part; std::getline(parts, part, '.');)
        labels += static_cast<char>(part.size()) + part;
    return labels + std::string(1, '\0');
}

struct Record {
    int type;
    std::string data;
};

inline constexpr int Cname = 5;
inline constexpr int Mx = 15;
inline constexpr int Text = 16;

inline constexpr int NameAsked = 0xC00C; ///< points to the name in the question

/// A host below the domain that was asked for.
inline Record Exchange(int preference, const std::string& label) {
    return {Mx, Word(preference) + static_cast<char>(label.size()) + label + Word(NameAsked)};
}

inline std::string Octets(const Record& record) {
    constexpr int classIn = 1;
    return Word(NameAsked) + Word(record.type) + Word(classIn) + Word(0) + Word(60) +
           Word(static_cast<int>(record.data.size())) + record.data;
}

/// The answer to a question: these records, all of the name that was asked for, and behind them one more, as
/// servers like to send.
inline std::string Answer(const std::string& question, int code, const std::vector<Record>& records) {
    const Record more{Text, "\1x"};
    const std::string asked = question.substr(12, question.find('\0', 12) + 5 - 12);
    std::string answer = question.substr(0, 2) + Word(0x8180 | code) + Word(1) +
                         Word(static_cast<int>(records.size())) + Word(0) + Word(records.empty() ? 0 : 1) +
                         asked;
    for (const Record& record : records)
        answer += Octets(record);
    return records.empty() ? answer : answer + Octets(more);
}

} // namespace names
