#include "apps/command/record.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace korvel::command {

using nlohmann::ordered_json;

Record::Record() : object_(std::make_unique<ordered_json>(ordered_json::object())) {}
Record::Record(const Record& other) : object_(std::make_unique<ordered_json>(*other.object_)) {}
Record::Record(Record&& other) noexcept = default;
Record::~Record() = default;

Record& Record::operator=(Record other) noexcept {
    object_ = std::move(other.object_);
    return *this;
}

template <class Value>
Record& Record::put(const char* name, const Value& value) {
    (*object_)[name] = value;
    return *this;
}

Record& Record::set(const char* name, bool value) {
    return put(name, value);
}

Record& Record::set(const char* name, int value) {
    return put(name, value);
}

Record& Record::set(const char* name, double value) {
    return put(name, value);
}

Record& Record::set(const char* name, const char* value) {
    return put(name, value);
}

Record& Record::set(const char* name, const std::string& value) {
    return put(name, value);
}

Record& Record::set(const char* name, std::optional<int> value) {
    return value ? put(name, *value) : put(name, nullptr);
}

Record& Record::set(const char* name, const std::vector<int>& values) {
    return put(name, values);
}

Record& Record::set(const char* name, const std::vector<double>& values) {
    return put(name, values);
}

Record& Record::set(const char* name, const std::vector<std::string>& values) {
    return put(name, values);
}

Record& Record::set(const char* name, Record value) {
    (*object_)[name] = std::move(*value.object_);
    return *this;
}

Record& Record::set(const char* name, std::vector<Record> values) {
    ordered_json list = ordered_json::array();
    for (Record& value : values) {
        list.push_back(std::move(*value.object_));
    }
    (*object_)[name] = std::move(list);
    return *this;
}

std::string Record::text() const {
    return object_->dump(2, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace korvel::command
