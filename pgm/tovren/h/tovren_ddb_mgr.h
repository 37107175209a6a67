// Owners of the two naming tables that are compiled into the library. Each exists at most once: it is made by the first
// get_mgr() and destroyed by delete_mgr().
//
// Both tables have one envelope. A zlib stream inflates to an image of an exact length: the magic "TOVREN_DDB", a body,
// and the CRC-32/BZIP2 of all before it in four bytes, least significant first. A table that breaks its format is
// reported with the text of the condition.
//
// A name argument is declared read-only but is standardised in place: afterwards the caller's string is trimmed and
// upper-case. So it must not be a constant object.
#ifndef TOVREN_DDB_MGR_H
#define TOVREN_DDB_MGR_H

#include "tovren_types.h"

#include <array>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

// The maps, in the order of the image. The comments tell key -> contents.
enum class TOVREN_DDB_GRAMMAR_ENUM : DWORD {
    PACKAGE_GRAMMAR,       // package-level name -> full ordering names
    PGM_GRAMMAR,           // programmer name -> package-level names
    PGM_PCF,               // programmer part file -> programmer names
    PGM_FAMILY_PCF,        // programmer family file -> programmer names
    DEV_PCF,               // device part file -> devices
    DEV_FAMILY_PCF,        // device family file -> devices
    DEVICE_PCF_FAMILY_PCF, // family file -> device part files
    FAMILY,                // family -> part files
    MAX,
};

inline constexpr std::array<const char*, DWORD(TOVREN_DDB_GRAMMAR_ENUM::MAX)> TOVREN_DDB_GRAMMAR_NAMES = {
    "PACKAGE_GRAMMAR", "PGM_GRAMMAR",           "PGM_PCF", "PGM_FAMILY_PCF", "DEV_PCF",
    "DEV_FAMILY_PCF",  "DEVICE_PCF_FAMILY_PCF", "FAMILY",
};

// Keys ascend byte by byte; contents keep the order of the image.
using TOVREN_DDB_MAP = std::map<std::string, std::vector<std::string>>;

// A compressed table, as it is compiled in.
struct TOVREN_DDB_BLOB {
    std::span<const unsigned char> stream; // zlib
    unsigned int length;                   // bytes of the image
};

class TOVREN_DDB_GRAMMAR_MGR {
public:
    TOVREN_DDB_GRAMMAR_MGR(); // the compiled-in table
    explicit TOVREN_DDB_GRAMMAR_MGR(const TOVREN_DDB_BLOB& blob);

    // ---- the one instance ----

    static TOVREN_DDB_GRAMMAR_MGR* get_mgr();
    static void delete_mgr();

    static TOVREN_DDB_GRAMMAR_MGR* m_mgr; // null until first use

    // ---- lookups ----

    // The map belongs to the manager.
    TOVREN_DDB_MAP* get_map(TOVREN_DDB_GRAMMAR_ENUM type) const;

    // Takes white space off both ends, then upper-cases.
    static void standardize_name(std::string& name);

    // The first key whose contents hold the name; empty when none does. Keys are not searched. Every call scans the
    // map.
    std::string get_mapping_key(const std::string& name, TOVREN_DDB_MAP* mapping) const;
    static std::string get_mapping_key(const std::string& name, TOVREN_DDB_GRAMMAR_ENUM type);

    // The contents of a key; empty when there is no such key.
    std::vector<std::string> get_key_mapping(const std::string& key, TOVREN_DDB_MAP* mapping) const;

    // The key that owns the name in one map. Where none does: with `keep_empty` and in the accessors without it the
    // empty text, else the standardised name.
    static std::string get_package_grammar(const std::string& name, bool keep_empty);
    static std::string get_pgm_grammar(const std::string& name, bool keep_empty);
    static std::string get_pgm_pcf(const std::string& name);
    static std::string get_pgm_family_pcf(const std::string& name);
    static std::string get_dev_pcf(const std::string& name);
    static std::string get_dev_family_pcf(const std::string& name);
    static std::string get_device_pcf_family_pcf(const std::string& name);
    static std::string get_family(const std::string& name);

    // The devices of a device part file.
    static std::vector<std::string> get_dev_pcf_list(const std::string& pcf);

    // ---- reading an image; both advance `index`, which stays at or below `data_size` ----

    // One string with its terminator. Something must follow it.
    std::string get_string(unsigned int& index, const unsigned char* data, unsigned int data_size) const;

    // One entry: key, contents, end mark.
    void get_mapping(TOVREN_DDB_MAP*& map, unsigned int& index, const unsigned char* data,
                     unsigned int data_size) const;

private:
    void parse(const unsigned char* data, unsigned int limit);

    std::array<std::unique_ptr<TOVREN_DDB_MAP>, DWORD(TOVREN_DDB_GRAMMAR_ENUM::MAX)> m_maps;
};

// The ordering list: for each ordering-part-number index the catalogue's part, 0 where it has none.
class TOVREN_DDB_OPN_MGR {
public:
    TOVREN_DDB_OPN_MGR(); // the compiled-in table
    explicit TOVREN_DDB_OPN_MGR(const TOVREN_DDB_BLOB& blob);

    // ---- the one instance ----

    static TOVREN_DDB_OPN_MGR* get_mgr();
    static void delete_mgr();

    static TOVREN_DDB_OPN_MGR* m_mgr; // null until first use

    // ---- lookups; INVALID_DWORD for none ----

    // The part of an index.
    unsigned int dev_opn_enum(unsigned int opn_enum) const;
    static unsigned int get_dev_opn_enum(unsigned int opn_enum);

    // The lowest index of a part. Every call scans the list.
    unsigned int opn_enum(unsigned int dev_enum) const;
    static unsigned int get_opn_enum(unsigned int dev_enum);

private:
    std::vector<unsigned int>& entries() const;
    void parse(const unsigned char* data, unsigned int data_size);

    std::unique_ptr<std::vector<unsigned int>> m_map;
};

#endif
