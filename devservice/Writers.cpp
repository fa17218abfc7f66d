#include "devservice/Writers.h"

#include <cstdio>

namespace devservice {

namespace {

// The identifiers are those of the system's own writers; the seven that no backup takes stand among them, in
// small and in capital letters.
constexpr char UsualWriters[] =
    "Task Scheduler Writer\t{d61d61c8-d73a-4eee-8cdd-f6f9786b7124}\tstable\tTasksStore\n"
    "VSS Metadata Store Writer\t{75DFB225-E2E4-4D39-9AC9-FFAFF65DDF06}\tstable\tWriterMetadataStore\n"
    "Performance Counters Writer\t{0bada1de-01a9-4625-8278-69e735f39dd2}\tstable\tPerformanceCounters\n"
    "System Writer\t{e8132975-6f93-4464-a53e-1050253ae220}\tstable\tSystem Files\tWin32 Services Files\n"
    "SqlServerWriter\t{a65faa63-5ea8-4ebc-9dbd-a0c4db26912a}\tstable\tLEDGER/master\tLEDGER/model\t"
    "LEDGER/orders\tLEDGER/stock 2025\n"
    "MSDEWriter\t{F8544AC1-0611-4FA5-B04B-F7EE00B03277}\tstable\n"
    "ASR Writer\t{BE000CBE-11FE-4426-9C58-531AA6355FC4}\tstable\tASR\tVolumes\n"
    "Microsoft Exchange Writer\t{76fe1ac4-15f7-4bcd-987e-8e1acb462fb7}\tstable\tMailbox Store 1\t"
    "Mailbox Store 2\tPublic Folders\n"
    "NTDS\t{b2014c9e-8711-4c5c-a5a9-3cf384484757}\tstable\tC:_Windows_NTDS\n"
    "ADAM (Branch) Writer\t{dd846aaa-a1b6-42a8-aaf8-03dcb6114bfd}\tstable\tadamntds.dit\n"
    "FRS Writer\t{d76f5a28-3092-4589-ba48-2958fb88ce29}\tstable\tSYSVOL\n"
    "Shadow Copy Optimization Writer\t{4Dc3bDd4-Ab48-4d07-aDb0-3bEe2926fD7f}\tstable\tShadow Copy\n"
    "Event Log Writer\t{eee8c692-67ed-4250-8d86-390603070d00}\tstable\tEvent Logs\n"
    "Registry Writer\t{afbab4a2-367d-4d15-a586-71dbb18f8485}\tstable\tRegistry\n"
    "COM+ REGDB Writer\t{542da469-d3e1-473c-9f4f-7847f01fc64f}\tstable\tCOM+ REGDB\n"
    "WMI Writer\t{a6ad56c2-b509-4e6c-bb19-49d8f43532f0}\tstable\tWMI\n"
    "BITS Writer\t{4969D978-BE47-48B0-B100-F328F07AC1E0}\tstable\n"
    "Dhcp Jet Writer\t{be9ac81e-3619-421f-920f-4c6fea9e93ad}\tstable\tC:_Windows_system32_dhcp\n"
    "FSRM Writer\t{12ce4370-5bb7-4c58-a76a-e5d5097e3674}\tstable\tFSRM Settings\n"
    "WINS Jet Writer\t{f08c1483-8407-4a26-8c26-6c267a629741}\tstable\twins.mdb\n"
    "Certificate Server Writer\t{6f5b15b5-da24-4d88-b737-63063e3a1f86}\tstable\tFennmoor Root\n"
    "Warehouse Writer\t{3b1f0a4e-52d6-4c1c-9f77-0d2b6c8e1a55}\tfailed\tInventory\tOrders & Returns\t"
    "Lager \xC3\x9C"
    "bersicht\n";

constexpr char BrokenLines[] =
    "\n"
    "no tabs at all\n"
    "Name And Identifier\t{11111111-2222-4333-8444-555555555555}\n"
    "\t{11111111-2222-4333-8444-555555555556}\tstable\tOf A Writer Without A Name\n"
    "Writer Without An Identifier\t\tstable\tComponent\n"
    "Not UTF-8 \xFF\xFE\t{11111111-2222-4333-8444-555555555557}\tstable\t\xC3\n"
    "Empty Components\t{11111111-2222-4333-8444-555555555558}\t\t\tOne\t\n"
    "Twice\t{11111111-2222-4333-8444-555555555559}\tstable\tA\tA\n"
    "Twice\t{11111111-2222-4333-8444-555555555559}\tstable\tA\n"
    "Another System's Line\t{11111111-2222-4333-8444-55555555555a}\tstable\tComponent\r\n"
    "A Last Line Without An End\t{11111111-2222-4333-8444-55555555555b}\tstable\tComponent";

std::string ManyWriters() {
    constexpr int Count = 1000;
    constexpr int Components = 100;
    const std::string tail(80, 'x');
    std::string list;
    for (int writer = 0; writer < Count; ++writer) {
        char head[96];
        std::snprintf(head, sizeof head, "Store %04d\t{77777777-0000-4000-8000-%012d}\tstable", writer,
                      writer);
        list += head;
        for (int component = 0; component < Components; ++component)
            list += "\tDatabase " + std::to_string(component) + " of the store " + tail;
        list += '\n';
    }
    return list;
}

} // namespace

std::optional<Writers> ParseWriters(const std::string& text) {
    if (text == "usual")
        return Writers::Usual;
    if (text == "malformed")
        return Writers::Malformed;
    if (text == "empty")
        return Writers::Empty;
    return text == "large" ? std::optional(Writers::Large) : std::nullopt;
}

std::string WriterList(Writers which) {
    switch (which) {
    case Writers::Usual:
        return UsualWriters;
    case Writers::Malformed:
        return std::string(UsualWriters).append(BrokenLines);
    case Writers::Empty:
        return {};
    case Writers::Large:
        break;
    }
    return ManyWriters();
}

} // namespace devservice
