#include <limits>

#include "measure.h"
#include "parse_number.h"
#include "print_values.h"

namespace velmora {

namespace {

/// The parts of a word between the marks.
std::vector<std::string> partsOf(const std::string& word, char mark) {
    std::vector<std::string> parts(1);
    for (const char letter : word) {
        if (letter == mark) {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    return parts;
}

/// Numbers from 1, given back from 0; none when one of the parts is no such number.
std::optional<std::vector<std::int32_t>> numbersFromZero(const std::vector<std::string>& parts) {
    std::vector<std::int32_t> numbers;
    for (const std::string& part : parts) {
        const auto number = parseInteger(part, 1, std::numeric_limits<std::int32_t>::max());
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number - 1);
    }
    return numbers;
}

using FoundPlace = std::variant<MeasuredPlace, ScriptFailure>;

FoundPlace placeOf(const std::string& word, const VelmoraDoc& doc) {
    if (const auto point = parseReals(partsOf(word, ','), 3)) {
        return MeasuredPlace{{(*point)[0], (*point)[1], (*point)[2]}, std::nullopt};
    }
    const auto numbers = numbersFromZero(partsOf(word, '/'));
    if (!numbers || numbers->size() < 2 || numbers->size() > 3) {
        return ScriptFailure{inQuotes(word) + " is no place", "write K/N/M (from 1), ZONE/NODE (from 1) or X,Y,Z"};
    }
    const auto place = numbers->size() == 3 ? gridPlace(doc.patches, (*numbers)[0], (*numbers)[1], (*numbers)[2])
                                            : nodePlace(doc.feRegion, (*numbers)[0], (*numbers)[1]);
    if (!place) {
        return ScriptFailure{"the model has no " + std::string(numbers->size() == 3 ? "point " : "node ") +
                                 inQuotes(word),
                             "print state tells its patches, zones and their counts"};
    }
    return *place;
}

} // namespace

PrintedValue measuredValue(std::span<const std::string> words, const VelmoraDoc& doc) {
    std::vector<MeasuredPlace> places;
    for (const std::string& word : words) {
        const FoundPlace found = placeOf(word, doc);
        if (const auto* failure = std::get_if<ScriptFailure>(&found)) {
            return *failure;
        }
        places.push_back(*std::get_if<MeasuredPlace>(&found));
    }
    const Measurement result =
        measure(doc.patches, places[0], places[1], places.size() > 2 ? std::optional(places[2]) : std::nullopt);
    return Json{{"distance", numberValue(result.distance)},
                {"delta", pointValue(result.delta)},
                {"along", maybeNumberValue(result.along)},
                {"angle", maybeNumberValue(result.angle)}};
}

} // namespace velmora
