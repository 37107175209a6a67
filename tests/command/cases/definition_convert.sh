# Encode and decode: the result alone on standard output, and the other one undoes it; the model of the tests agrees.
list=$("$SUPPORT/definition.py" entry x "")
tovren flash definition encode "$list" > text
[[ $(< text) == "$("$SUPPORT/definition.py" encode "$list")" ]] && echo "encoded as the model does"
[[ $("$SUPPORT/definition.py" decode "$(< text)") == "$list" ]] && echo "decoded by the model"
[[ $(tovren flash definition decode "$(< text)") == "$list" ]] && echo "decoded"
[[ $(tovren flash definition decode < text | tovren flash definition encode) == "$(< text)" ]] && echo "through pipes"
tovren --json flash definition encode "$list" | cmp - <(printf '{\n  "encoded": "%s"\n}\n' "$(< text)")
tovren --json flash definition decode "$(< text)" | cmp - <(printf '{\n  "list": "%s"\n}\n' "$list")
tovren flash definition decode "$(tovren flash definition encode "$list$list")" | cmp - <(echo "$list$list")
attempt() {
    tovren flash definition "$@"
    echo "[$*] $?"
}
attempt encode ''
attempt decode ''
attempt decode 'un!'
attempt decode 'unknown'
attempt --json decode 'unknown'
attempt tag ''
version=$(tovren flash definition tag @A@ | python3 -c 'import json, sys; print(json.load(sys.stdin)["version_text"])')
for definition in A @A@ @ABCDEFG@ @ABCDEFGH@ "${list%%#*}"; do
    tag=$(tovren flash definition tag "$definition" | python3 -c 'import json, sys; print(json.load(sys.stdin)["tag"])')
    [[ $tag == "$("$SUPPORT/definition.py" tag "$version" "$definition")" ]] && echo "tag of ${#definition} characters"
done
TOVREN_VERSION_TEXT=9.9 tovren flash definition tag @A@ | sed -n 's/Build [0-9]*/Build N/; /version/p'
