// Naming tables of one's own, in the place of those that are compiled in.
#ifndef TESTS_SUPPORT_NAMING_FIXTURE_H
#define TESTS_SUPPORT_NAMING_FIXTURE_H

#include "fixtures.h"
#include "naming_image.h"
#include "tovren_ddb_mgr.h"

inline constexpr char IN_DDB_MGR[] = "pgm/tovren/tovren_ddb_mgr.cpp";
inline constexpr char IN_MGR[] = "pgm/tovren/tovren_mgr.cpp";

// A table and the stream that it is read from; `length` is what the table is said to inflate to.
class NAMING_TABLE {
public:
    explicit NAMING_TABLE(const BYTES& image) : NAMING_TABLE(zlib_stream(image), image.size()) {}
    NAMING_TABLE(BYTES stream, size_t length) : m_stream(std::move(stream)), m_length(length) {}

    TOVREN_DDB_BLOB blob() const { return {m_stream, static_cast<unsigned int>(m_length)}; }

private:
    BYTES m_stream;
    size_t m_length;
};

inline void load_grammar(const BYTES& image) {
    const TOVREN_DDB_GRAMMAR_MGR manager(NAMING_TABLE(image).blob());
}
inline void load_opn(const BYTES& image) {
    const TOVREN_DDB_OPN_MGR manager(NAMING_TABLE(image).blob());
}

// Makes a table the process's own; the compiled-in ones are back after the test.
class NAMING_TEST : public HOST_TEST {
protected:
    NAMING_TEST() { forget(); }
    ~NAMING_TEST() override { forget(); }

    static void use_grammar(const std::vector<NAMING_MAP>& maps) {
        GRAMMAR_IMAGE image;
        image.maps = maps;
        TOVREN_DDB_GRAMMAR_MGR::delete_mgr();
        TOVREN_DDB_GRAMMAR_MGR::m_mgr = new TOVREN_DDB_GRAMMAR_MGR(NAMING_TABLE(image.bytes()).blob());
    }

    static void use_opn(const std::vector<unsigned int>& values) {
        TOVREN_DDB_OPN_MGR::delete_mgr();
        TOVREN_DDB_OPN_MGR::m_mgr = new TOVREN_DDB_OPN_MGR(NAMING_TABLE(OPN_IMAGE(values).bytes()).blob());
    }

private:
    static void forget() {
        TOVREN_DDB_GRAMMAR_MGR::delete_mgr();
        TOVREN_DDB_OPN_MGR::delete_mgr();
    }
};

#endif
