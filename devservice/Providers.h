#pragma once

#include <string>
#include <vector>

namespace devservice {

/// A field of a provider's login card, all its attributes as the template names them.
struct ProviderField {
    const char* name;
    const char* id;
    bool encrypted = false;
    bool hidden = false;
    bool email = false;
    const char* value = "";
    const char* beginWith = "";
};

/// A kind of storage that can be mounted. None of them exists.
struct Provider {
    const char* name;
    const char* id;
    std::vector<ProviderField> fields;
    const char* elements = ""; ///< further elements, which belong into the virtual directory's node
};

const std::vector<Provider>& Providers();
bool IsProvider(const std::string& id);                             ///< ignoring case
const ProviderField* FindProviderField(const std::string& fieldId); ///< none: no provider knows it

/// The document that lists them all.
std::string ProviderList();
/// The field's attributes that are set, in the words of a template and of a card.
std::string RuleAttributes(const ProviderField& field);

} // namespace devservice
