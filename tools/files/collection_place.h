// Which collection a command works on: the one that is named first, else the one of the environment.
//
//   take_collection("show", {&options.collection}, &options.identifiers);
//
// Where DBENTRY_COLLECTION is set, the first argument is the collection only if it can be one: a file that is
// there, a URL, or "-". Otherwise every argument moves one place on.
#pragma once

#include <string>
#include <vector>

// `singles` are the arguments in their order, the collection first; what does not fit them goes to `rest`.
// Throws ToolError (usage) when there is no collection.
void take_collection(const std::string& command, const std::vector<std::string*>& singles,
                     std::vector<std::string>* rest);
