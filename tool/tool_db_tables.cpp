// Index tables held against the records.
#include "tool_db_tables.h"

#include "host_text.h"
#include "tool_db_record.h"
#include "tool_device_record.h"
#include "tool_text.h"

#include <map>
#include <set>

namespace {

using KIND = TOOL_CATALOGUE_VALUE::KIND;

constexpr size_t PCF = 1; // position of that member
constexpr unsigned int GENERIC_POSITION = 1;

class TABLES {
public:
    explicit TABLES(const TOOL_DB_FILE& file) : m_file(file) {
        for (unsigned int i = 0; i < file.records.size(); ++i) {
            const TOOL_DB_RECORD& record = file.records[i];
            m_families.emplace(std::get<unsigned int>(record[0].value), i);
            m_devices.emplace(std::get<unsigned int>(record[2].value), i);
            m_parts.emplace(std::get<unsigned int>(record[3].value), i);
            m_pcfs.emplace(pcf_of(record), i);
        }
    }

    // A wrong entry is told once: what follows from it is judged by the entry that is expected.
    std::vector<std::string> faults() {
        count_servers();
        std::vector<unsigned int> families;
        for (unsigned int family = 0; family < table(0).size(); ++family) {
            families.push_back(own(m_families, family, family == 0 ? INVALID_DWORD : GENERIC_POSITION));
            expect({KIND::FAMILY, family}, 0, families.back());
        }
        std::vector<unsigned int> devices;
        for (unsigned int device = 0; device < table(1).size(); ++device) {
            devices.push_back(expected_of_device(device, families));
            expect({KIND::DEVICE, device}, 1, devices.back());
        }
        for (unsigned int part = 0; part < table(2).size(); ++part) {
            const unsigned int device = DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(part));
            expect({KIND::PART, part}, 2,
                   own(m_parts, part, part == DEV_PART_INVALID ? INVALID_DWORD : devices[device]));
        }
        return std::move(m_faults);
    }

private:
    using FIRST = std::map<unsigned int, unsigned int>; // by value, the first record with it

    const std::vector<unsigned int>& table(size_t i) const { return m_file.tables[i].positions; }

    static std::string pcf_of(const TOOL_DB_RECORD& record) {
        std::string pcf = std::get<std::string>(record[PCF].value);
        stl_tolower(pcf);
        return pcf;
    }

    static unsigned int own(const FIRST& records, unsigned int value, unsigned int otherwise) {
        const auto place = records.find(value);
        return place == records.end() ? otherwise : place->second;
    }

    unsigned int expected_of_device(unsigned int device, const std::vector<unsigned int>& families) {
        const bool may_be_of_part_list = !m_devices.contains(device) && device != DEV_DEVICE_INVALID;
        if (may_be_of_part_list)
            if (const unsigned int server = most_frequent_server(device); is_of_part_list(server))
                return server;
        const unsigned int family = DEV_PART_MANAGER().get_family_of(DEV_DEVICE_ENUM(device));
        return own(m_devices, device, device == DEV_DEVICE_INVALID ? INVALID_DWORD : families[family]);
    }

    // The part list is not in the file: what it names for a device shows in the device's entry and in those of its
    // parts, which follow it. One of them may be wrong, so the most count, and the device's own where that is open.
    void count_servers() {
        for (unsigned int part = 0; part < table(2).size(); ++part)
            if (!m_parts.contains(part))
                ++m_servers[DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(part))][table(2)[part]];
    }

    unsigned int most_frequent_server(unsigned int device) {
        auto& counts = m_servers[device];
        unsigned int server = table(1)[device];
        size_t most = ++counts[server];
        for (const auto& [position, count] : counts) {
            if (count > most) {
                server = position;
                most = count;
            }
        }
        return server;
    }

    // The first record with its PCF name.
    bool is_of_part_list(unsigned int position) const {
        if (position >= m_file.records.size())
            return false;
        const std::string pcf = pcf_of(m_file.records[position]);
        return !pcf.empty() && m_pcfs.at(pcf) == position;
    }

    std::string server_text(unsigned int position) const {
        if (position == INVALID_DWORD)
            return "no record";
        if (position >= m_file.records.size())
            return "record " + std::to_string(position) + ", which is not there";
        const TOOL_RECORD_KEY key = tool_record_key(tool_db_device(m_file.records[position]));
        return "record " + std::to_string(position) + ", " + key.kind + ' ' + tool_printable(key.name);
    }

    void expect(TOOL_CATALOGUE_VALUE value, size_t of, unsigned int expected) {
        const unsigned int found = table(of)[value.number];
        if (found == expected)
            return;
        const std::string name = tool_user_name(value);
        m_faults.push_back(std::string(tool_kind_text(value.kind)) + ' ' +
                           (name.empty() ? std::to_string(value.number) : name) + " is served by " +
                           server_text(found) + ", expected " + server_text(expected));
    }

    const TOOL_DB_FILE& m_file;
    FIRST m_families;
    FIRST m_devices;
    FIRST m_parts;
    std::map<std::string, unsigned int> m_pcfs;
    std::map<unsigned int, std::map<unsigned int, size_t>> m_servers; // by device, how many entries name a record
    std::vector<std::string> m_faults;
};

} // namespace

std::vector<std::string> tool_db_table_faults(const TOOL_DB_FILE& file) {
    return TABLES(file).faults();
}

std::string tool_db_tables_text(const TOOL_DB_FILE& file) {
    std::set<unsigned int> records;
    for (const TOOL_DB_TABLE& table : file.tables)
        records.insert(table.positions.begin(), table.positions.end());
    records.erase(INVALID_DWORD);
    return std::to_string(file.tables[0].positions.size()) + " families, " +
           std::to_string(file.tables[1].positions.size()) + " devices and " +
           std::to_string(file.tables[2].positions.size()) + " parts, served by " +
           tool_count_text(records.size(), "record");
}
