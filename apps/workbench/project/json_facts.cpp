#include "apps/workbench/project/json_facts.h"

#include <cmath>
#include <limits>

#include <QJsonDocument>

namespace korvel::workbench {
namespace {

std::optional<int> whole_number(const QJsonValue& value);

} // namespace

JsonFacts JsonFacts::parse(const std::string& text, const std::string& name) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    JsonFacts facts(document.object(), name, {});
    if (error.error != QJsonParseError::NoError) {
        facts.fail(error.errorString().toStdString() + " at byte " + std::to_string(error.offset));
    }
    if (!document.isObject()) {
        facts.fail("the text is not an object");
    }
    return facts;
}

bool JsonFacts::has(const char* member) const {
    return object_.contains(QLatin1String(member));
}

bool JsonFacts::is_array(const char* member) const {
    return object_.value(QLatin1String(member)).isArray();
}

double JsonFacts::number(const char* member) const {
    const QJsonValue found = value(member);
    if (!found.isDouble() || !std::isfinite(found.toDouble())) {
        fail_kind(member, "a finite number");
    }
    return found.toDouble();
}

int JsonFacts::whole(const char* member) const {
    const std::optional<int> number = whole_number(value(member));
    if (!number) {
        fail_kind(member, "a whole number of 32 bits");
    }
    return *number;
}

std::string JsonFacts::text(const char* member) const {
    const QJsonValue found = value(member);
    if (!found.isString()) {
        fail_kind(member, "a text");
    }
    return found.toString().toStdString();
}

bool JsonFacts::truth(const char* member) const {
    const QJsonValue found = value(member);
    if (!found.isBool()) {
        fail_kind(member, "true or false");
    }
    return found.toBool();
}

JsonFacts JsonFacts::object(const char* member) const {
    const QJsonValue found = value(member);
    if (!found.isObject()) {
        fail_kind(member, "an object");
    }
    return {found.toObject(), name_, path_ + member + "."};
}

std::vector<double> JsonFacts::numbers(const char* member, int count) const {
    const QJsonArray found = array(member);
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(found.size()));
    for (const auto element : found) {
        values.push_back(element.toDouble(std::numeric_limits<double>::quiet_NaN()));
        if (!std::isfinite(values.back())) {
            fail_kind(member, "an array of finite numbers");
        }
    }
    if (found.size() != count) {
        fail(path_ + member + " has " + std::to_string(found.size()) + " numbers instead of " +
             std::to_string(count));
    }
    return values;
}

std::vector<int> JsonFacts::wholes(const char* member) const {
    const QJsonArray found = array(member);
    std::vector<int> values;
    values.reserve(static_cast<std::size_t>(found.size()));
    for (const auto element : found) {
        const std::optional<int> number = whole_number(element);
        if (!number) {
            fail_kind(member, "an array of whole numbers");
        }
        values.push_back(*number);
    }
    return values;
}

std::vector<JsonFacts> JsonFacts::objects(const char* member) const {
    const QJsonArray found = array(member);
    std::vector<JsonFacts> values;
    values.reserve(static_cast<std::size_t>(found.size()));
    for (const auto element : found) {
        if (!element.isObject()) {
            fail_kind(member, "an array of objects");
        }
        values.push_back(JsonFacts(element.toObject(), name_,
                                   path_ + member + "[" + std::to_string(values.size()) + "]."));
    }
    return values;
}

QJsonValue JsonFacts::value(const char* member) const {
    if (!has(member)) {
        fail(path_ + member + " is missing");
    }
    return object_.value(QLatin1String(member));
}

QJsonArray JsonFacts::array(const char* member) const {
    const QJsonValue found = value(member);
    if (!found.isArray()) {
        fail_kind(member, "an array");
    }
    return found.toArray();
}

void JsonFacts::fail_kind(const char* member, const char* kind) const {
    fail(path_ + member + " is not " + kind);
}

void JsonFacts::fail(const std::string& message) const {
    throw kit::input_error(name_ + ": " + message, {.file = name_});
}

namespace {

std::optional<int> whole_number(const QJsonValue& value) {
    const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    const bool fits = number >= std::numeric_limits<int>::min() &&
                      number <= std::numeric_limits<int>::max() && number == std::floor(number);
    return fits ? std::optional(static_cast<int>(number)) : std::nullopt;
}

} // namespace
} // namespace korvel::workbench
