// Why a search has no answer, or one that does not solve: the one of several reasons that the arguments show.
#pragma once

#include <string>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::calls {

// Of a call whose arguments keep their rules; answered: it has an answer, which does not solve. "" where the arguments
// show no reason.
std::string cause_of(const catalogue::Calculation& calculation, Arguments arguments, bool answered);

// Flows with a positive and a negative one among them; without both there is no rate.
bool changes_sign(Arguments flows);

// Of XIRR, the call's values and its dates.
struct DatedLists {
    explicit DatedLists(Arguments of_xirr)
        : values{of_xirr.first(of_xirr.size() / 2)},
          dates{of_xirr.subspan(of_xirr.size() / 2, of_xirr.size() / 2)},
          guess{of_xirr.subspan(2 * (of_xirr.size() / 2))} {}

    [[nodiscard]] bool begins_with_earliest() const;

    Arguments values;
    Arguments dates;
    Arguments guess;  // none, or one
};

}  // namespace finance::calls
