// Memory tracking of the host.
#ifndef HOST_MEM_H
#define HOST_MEM_H

// Registers a library with the memory tracker for the object's lifetime: the constructor enters `prefix`, the
// destructor takes it out again. A library holds one from its load to its unload. The tracker keeps a copy of the text.
class MEM_INITIALIZER {
public:
    explicit MEM_INITIALIZER(const char* prefix);
    ~MEM_INITIALIZER();
    MEM_INITIALIZER(const MEM_INITIALIZER&) = delete;
    MEM_INITIALIZER& operator=(const MEM_INITIALIZER&) = delete;

private:
    const char* m_prefix;
};

#endif
