#include "devservice/CloudScenarios.h"

#include "devservice/Providers.h"
#include "devservice/WireText.h"

#include <cstdio>

namespace devservice {

using namespace std::chrono_literals;

namespace {

/// A storage account of a scenario; its fields' values stand in the order of its provider's template.
struct Account {
    const char* name;
    const char* cardId;
    int status;
    size_t provider;
    std::vector<const char*> values;
    const char* trouble = ""; ///< what its last login went wrong with
};

std::vector<Account> AccountsOf(const std::string& scenario) {
    if (scenario == "desktop")
        return {
            {"Home", "{B1D4A6E0-2F57-4B1C-8E43-90A1C2D3E4F5}", 3, 0, {"mara", "seven small boats"}},
            {"Archive",
             "{C2E5B7F1-3068-4C2D-9F54-A1B2D3E4F506}",
             3,
             2,
             {"HL-88213-MARA", "kQ27-tallow-9", "mara-archive"}},
            {"Team", "{D3F6C802-4179-4D3E-A065-B2C3E4F50617}", 3, 1, {"mara@hillside.example", "lantern"}},
            {"Old Storage",
             "{E407D913-528A-4E4F-B176-C3D4F5061728}",
             2,
             3,
             {"mara.old", "forgotten", "north-2"},
             "The account \"mara.old\" has ended."}};
    if (scenario == "server" || scenario == "huge")
        return {{"Vault",
                 "{F518EA24-639B-4F50-8287-D4E506172839}",
                 3,
                 4,
                 {"hillside-office", "ten green bottles"}},
                {"Second Site", "{0629FB35-74AC-4061-9398-E5F60728394A}", 1, 0, {"hillside", "second"}}};
    return {};
}

std::string CardOf(const Account& account) {
    std::string text = std::string("<SafeCard><Name>Login Info - ") + account.name + "</Name><Id>" +
                       account.cardId + "</Id><Fields>";
    const Provider& provider = Providers()[account.provider];
    for (size_t i = 0; i < provider.fields.size(); ++i) {
        const ProviderField& field = provider.fields[i];
        text += std::string("<Field><FieldName>") + field.name + "</FieldName><FieldData>" +
                Base64Encode(account.values[i]) + "</FieldData><FieldId>" + field.id +
                "</FieldId><Encrypted>" + (field.encrypted ? "True" : "False") + "</Encrypted></Field>";
    }
    return text + "</Fields>";
}

/// A file with its size in octets, or a folder.
struct Thing {
    const char* path;
    size_t octets = 0;
};

constexpr Thing DesktopThings[] = {
    {"/Home/Documents/Letters/To the council.odt", 18'211},
    {"/Home/Documents/Letters/To the landlord, 2.odt", 21'004},
    {"/Home/Documents/Letters/To the landlord, 10.odt", 20'870},
    {"/Home/Documents/Taxes 2023/"},
    {"/Home/Documents/Taxes 2024/Receipts/"},
    {"/Home/Documents/Household.ods", 44'120},
    {"/Home/Photos/2009/"},
    {"/Home/Photos/2024/Garden in May/hall.jpg", 96'400},
    {"/Home/Photos/2024/R\xC3\xA4ume & Pl\xC3\xA4ne/"},
    {"/Home/Projects/Boat #1 (old)/plan.txt", 902},
    {"/Home/Projects/50% sail/"},
    {"/Home/Projects/Boat 2/Boat 2 drawings/"},
    {"/Home/Projects/Boat 10/"},
    {"/Home/Shares/"},
    {"/Home/Slides/Club evening.odp", 61'000},
    {"/Home/.trash/"},
    {"/Archive/Photos/"},
    {"/Archive/Projects/"},
    {"/Archive/Snapshots/Letters/"},
    {"/Archive/Snapshots/Office/"},
    {"/Archive/Snapshots/Garden plans/091306a3-3cb9-4778-b990-6efd84ed4bb5/"},
    {"/Archive/Applications/Mail/"},
    {"/Archive/Notebook/"},
    {"/Team/plan.odt", 31'502},
    {"/Team/rota.xlsx", 12'090},
    {"/Team/logo.svg", 2'213},
    {"/Team/photos/hall.jpg", 96'400},
    {"/43811DCD-8C5A-4EF9-B903-2EEA9CE88487/Team/"},
};

constexpr Thing ServerThings[] = {
    {"/Vault/Shares/Office/"},
    {"/Vault/Shares/Workshop/stock.qdb", 52'000},
    {"/Vault/Snapshots/Shares/091306a3-3cb9-4778-b990-6efd84ed4bb5/"},
    {"/Vault/Applications/Databases/"},
    {"/Vault/Accounting/2024/"},
    {"/Vault/Archive/box 0/"},
    {"/Second Site/Shares/"},
};

template <size_t N>
void PutAll(const Thing (&things)[N], DavTree& tree) {
    SimTime modified = MakeTime(2024, 9, 3, 8, 12, 40);
    for (const Thing& thing : things)
        tree.Put(thing.path, thing.octets, modified += 97h + 31min);
}

} // namespace

void PopulateCloud(const std::string& scenario, int entries, Profile& profile, DavTree& tree,
                   Settings& settings) {
    std::vector<VirtualDirectory> directories;
    const std::vector<Account> accounts = AccountsOf(scenario);
    for (const Account& account : accounts) {
        const std::string provider = Providers()[account.provider].id;
        profile.AddCard(CardOf(account));
        directories.push_back({account.name, account.cardId, account.status, provider});
        if (*account.trouble)
            settings.Set(provider + '/' + account.name, "2", account.trouble);
    }
    if (scenario == "desktop")
        PutAll(DesktopThings, tree);
    else if (scenario == "server" || scenario == "huge")
        PutAll(ServerThings, tree);
    const std::string first = directories.empty() ? "Home" : directories.front().name;
    for (int i = 1; i <= entries; ++i)
        tree.Put('/' + first + "/Many/Folder " + std::to_string(i) + '/', 0,
                 MakeTime(2024, 12, 1) + 1min * i);
    for (const VirtualDirectory& directory : directories)
        tree.Mount(directory.name);
    profile.SetDirectories(std::move(directories));
}

} // namespace devservice
