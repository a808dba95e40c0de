// Per-document insertion states.
#include "vantor/host/InsertionStates.h"

namespace vantor {

const InsertionState* InsertionStates::find(const cad::app::Document* document) const {
    auto it = states_.find(document);
    return it == states_.end() ? nullptr : &it->second;
}

}  // namespace vantor
