#include "devservice/Providers.h"

#include "devservice/WireText.h"

#include <algorithm>

namespace devservice {

const std::vector<Provider>& Providers() {
    static const std::vector<Provider> providers{
        {"Fennmoor Storage",
         "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}",
         {{"User Name", "{51C0A3E7-0B62-4C1F-8A94-6D2E70B1F301}"},
          {"Password", "{51C0A3E7-0B62-4C1F-8A94-6D2E70B1F302}", true}}},
        {"Quillmoor Box",
         "{1A5D7C63-8B52-4F1C-AD66-32E9F4B8CA02}",
         {{"E-mail", "{62D1B4F8-1C73-4D20-9BA5-7E3F81C20401}", false, false, true},
          {"Password", "{62D1B4F8-1C73-4D20-9BA5-7E3F81C20402}", true}}},
        {"Harbourline Objects",
         "{2B6E8D74-9C63-401D-BE77-43FA05C9DB03}",
         {{"Access Key", "{73E2C509-2D84-4E31-ACB6-8F4092D31501}", false, false, false, "", "HL-"},
          {"Secret Key", "{73E2C509-2D84-4E31-ACB6-8F4092D31502}", true},
          {"Container", "{73E2C509-2D84-4E31-ACB6-8F4092D31503}", false, false, false, "backups"}}},
        {"Lantern Row Files",
         "{3C7F9E85-AD74-412E-8F88-540B16DAEC04}",
         {{"Account", "{84F3D61A-3E95-4F42-BDC7-905103E42601}"},
          {"Password", "{84F3D61A-3E95-4F42-BDC7-905103E42602}", true},
          {"Region", "{84F3D61A-3E95-4F42-BDC7-905103E42603}", false, true, false, "north-2"}}},
        {"Tarnwick Vault",
         "{4D80AF96-BE85-423F-9099-651C27EBFD05}",
         {{"Client Id", "{9504E72B-4FA6-4053-8ED8-A16214F53701}"},
          {"Client Secret", "{9504E72B-4FA6-4053-8ED8-A16214F53702}", true}},
         "<ServerAddress>vault.tarnwick.example</ServerAddress><ServerPort "
         "Secure=\"TRUE\">8443</ServerPort>"},
    };
    return providers;
}

bool IsProvider(const std::string& id) {
    const auto& all = Providers();
    return std::any_of(all.begin(), all.end(), [&](const Provider& each) { return SameName(each.id, id); });
}

const ProviderField* FindProviderField(const std::string& fieldId) {
    for (const Provider& provider : Providers())
        for (const ProviderField& field : provider.fields)
            if (SameName(field.id, fieldId))
                return &field;
    return nullptr;
}

std::string RuleAttributes(const ProviderField& field) {
    std::string text;
    if (field.hidden)
        text += XmlAttribute("Hidden", "TRUE");
    if (field.email)
        text += XmlAttribute("EmailFormat", "TRUE");
    if (*field.beginWith)
        text += XmlAttribute("BeginWith", field.beginWith);
    return text;
}

std::string ProviderList() {
    std::string list;
    for (const Provider& provider : Providers()) {
        list += "<VirtualStorage" + XmlAttribute("DisplayName", provider.name) +
                XmlAttribute("SPID", provider.id) + "><SPID>" + provider.id + "</SPID><SafeCardTemplate>";
        for (const ProviderField& field : provider.fields)
            list += "<Field" + XmlAttribute("Name", field.name) +
                    XmlAttribute("Encrypted", field.encrypted ? "TRUE" : "FALSE") +
                    XmlAttribute("FieldId", field.id) + XmlAttribute("Value", field.value) +
                    RuleAttributes(field) + "/>";
        list += std::string("</SafeCardTemplate>") + provider.elements + "</VirtualStorage>";
    }
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><VirtualStorageProviders>" + list +
           "</VirtualStorageProviders>";
}

} // namespace devservice
