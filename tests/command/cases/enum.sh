# The four lists by name or number; a name or a value of one. The empty name has the value 0, the value 0 no name.
attempt() {
    tovren "$@"
    echo "[$*] $?"
}
attempt enum list PGM_FLASH_BLOCK_TYPE
attempt enum list 1 --json
for type in pgm_rba_type PGM_ICB_TYPE PGM_BITASM_GENERIC_ENUM_TYPE; do
    tovren enum list $type | wc -l
done
attempt enum check 1 cfm0
attempt enum check PGM_FLASH_BLOCK_TYPE cfm0 --json
attempt enum check 1 8
attempt enum check 1 8 --json
attempt enum check 1 9
attempt enum check 1 9 --json
attempt enum check 1 0
attempt enum check 1 '' --json
attempt enum check 1 CFM9
attempt enum check 1 CFM9 --json
attempt enum check 4 CFM0
attempt enum list PGM_TYPE
attempt enum check 1
attempt enum
