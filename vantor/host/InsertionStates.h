// The insertion state of every open document, keyed by the document.
#pragma once

#include <map>

#include "vantor/placement/InsertionState.h"

namespace cad::app {
class Document;
}

namespace vantor {

class InsertionStates {
public:
    // The document's state, made empty on first use.
    InsertionState& of(const cad::app::Document* document) { return states_[document]; }
    // nullptr when nothing was kept for the document.
    const InsertionState* find(const cad::app::Document* document) const;
    // A document that goes takes its state along: a later document may get the same address.
    void clear(const cad::app::Document* document) { states_.erase(document); }
    std::size_t size() const { return states_.size(); }

private:
    std::map<const cad::app::Document*, InsertionState> states_;
};

}  // namespace vantor
