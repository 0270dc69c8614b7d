// The frames of a download, without the marks at their ends. Nothing protects them but that a controller
// sends the fields of the first frame twice, and that the frames with values have a known length.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn {

// Bytes of a value field.
inline constexpr std::size_t value_width = 8;
// Bytes of the moment that a data set begins with.
inline constexpr std::size_t moment_width = 8;

// The moment of a data set as it stands on the line: the year by its last two digits.
struct DataSetHead {
    int day = 0, month = 0, year = 0, quarter = 0;
};

struct DataSet {
    DataSetHead head;
    std::vector<float> values; // track 1 first
};

// The fields that a frame begins with are taken off its front. Nothing where one of them makes no sense.
std::optional<DataSet> take_data_set(std::string_view& frame, int tracks);

// A value field: -999 for the controller's "***". Nothing for what is no number.
std::optional<float> value_of_field(std::string_view field);

// What a controller says of itself before the data.
struct Initialisation {
    int tracks = 0; // as many as were taken
    std::vector<std::string> units, names;
};
// At most so many tracks are taken. Nothing where two copies of a field differ.
std::optional<Initialisation> take_initialisation(std::string_view frame, int most_tracks);

} // namespace velorn
