// What the values of a column amount to.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

/// All four are NaN when there are no values.
struct Summary {
    double minimum;
    double median; ///< the middle value, or the mean of the two middle ones
    double mean;
    double maximum;
};

/// `values` holds no NaN, in any order; its order changes.
Summary summarise(std::vector<double>& values);

/// How many of the values lie in each of equally wide bins from the smallest finite value to the largest.
/// Infinite values are left out. There are `most` bins, but one for each whole number when all values are
/// whole and there are fewer such numbers, one when all values are equal, none without finite values.
std::vector<std::size_t> countBins(const std::vector<double>& values, std::size_t most);

/// One block character a bin, as high as its share of the fullest bin; a blank for an empty bin.
std::string barPicture(const std::vector<std::size_t>& bins);

/// A bar of at most `width` characters, as long as the share of `count` in `most`, in steps of an eighth.
std::string horizontalBar(std::size_t count, std::size_t most, std::size_t width);

/// One of five shades from blank to full, for `count` of `most`; what is not empty is not blank.
const char* shade(std::size_t count, std::size_t most);

} // namespace vexa::inspect
