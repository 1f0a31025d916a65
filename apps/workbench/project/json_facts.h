#pragma once

#include <optional>
#include <string>

#include <QJsonArray>
#include <QJsonObject>

#include "kit/kit.h"

namespace korvel::workbench {

/// An object of a JSON text whose members are asked for by name and kind. What is missing or of
/// another kind throws a kit::Error that names the file and the member.
class JsonFacts {
public:
    /// `name` is that of the file in messages.
    static JsonFacts parse(const std::string& text, const std::string& name);

    bool has(const char* member) const;

    double number(const char* member) const; ///< finite
    int whole(const char* member) const;
    std::string text(const char* member) const;
    bool truth(const char* member) const;
    JsonFacts object(const char* member) const;
    std::vector<double> numbers(const char* member, int count) const; ///< an array of as many
    std::vector<int> wholes(const char* member) const;
    std::vector<JsonFacts> objects(const char* member) const;

    bool is_array(const char* member) const;

    [[noreturn]] void fail(const std::string& message) const;

private:
    JsonFacts(QJsonObject object, std::string name, std::string path)
        : object_(std::move(object)), name_(std::move(name)), path_(std::move(path)) {}
    QJsonValue value(const char* member) const;
    QJsonArray array(const char* member) const;
    [[noreturn]] void fail_kind(const char* member, const char* kind) const;

    QJsonObject object_;
    std::string name_;
    std::string path_; // of the object, "solids.bodies[3]."
};

} // namespace korvel::workbench
