#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace korvel::command {

/// A JSON object whose members keep the order in which they are set. Setting one again replaces it.
class Record {
public:
    Record();
    Record(const Record& other);
    Record(Record&& other) noexcept;
    Record& operator=(Record other) noexcept;
    ~Record();

    Record& set(const char* name, bool value);
    Record& set(const char* name, int value);
    Record& set(const char* name, double value); ///< null if it is not finite
    Record& set(const char* name, const char* value);
    Record& set(const char* name, const std::string& value);
    Record& set(const char* name, std::optional<int> value); ///< null if there is none
    Record& set(const char* name, const std::vector<int>& values);
    Record& set(const char* name, const std::vector<double>& values);
    Record& set(const char* name, const std::vector<std::string>& values);
    Record& set(const char* name, Record value);
    Record& set(const char* name, std::vector<Record> values);

    /// JSON in lines; bytes of texts that are not UTF-8 are replaced.
    std::string text() const;

private:
    template <class Value>
    Record& put(const char* name, const Value& value);

    std::unique_ptr<nlohmann::ordered_json> object_;
};

} // namespace korvel::command
