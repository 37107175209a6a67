# Brackets without end are a wrong value like any other.
deep() {
    printf '%*s' "$1" '' | tr ' ' "$2"
}
attempt() {
    tovren flash define --from - 2>&1 | grep -v missing
    echo "${PIPESTATUS[0]}"
}
attempt < <(deep 200000 '['; deep 200000 ']')
attempt < <(deep 200000 '[')
attempt < <(printf '{"memory_id": '; deep 200000 '['; deep 200000 ']'; echo '}')
attempt < <(printf '[{"memory_id": {"a": '; deep 200000 '['; deep 200000 ']'; echo '}}]')
attempt < <(echo '[{"memory_id": {"a": {"b": 1}}, "aai_mode": 1}, {"aai_mode": 1, "aai_mode": 2}]')
