# Completion of tovren for bash. The command knows what may stand where (tovren __complete); this fits its answer to
# readline, which hands over words that are cut at "=" and ":" and wants back what follows the last cut, quoted.

# Puts the words of the line together again, up to the cursor, into the caller's `words`.
_tovren_words() {
    local i rest=$COMP_LINE trimmed word
    for ((i = 0; i <= COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        trimmed=${rest#"${rest%%[![:space:]]*}"}
        local start=$((${#COMP_LINE} - ${#trimmed}))
        ((start + ${#word} <= COMP_POINT)) || word=${COMP_LINE:start:COMP_POINT > start ? COMP_POINT - start : 0}
        if ((i == 0)) || [[ $trimmed != "$rest" ]]; then
            words+=("$word")
        else
            words[${#words[@]} - 1]+=$word
        fi
        rest=${trimmed#"${COMP_WORDS[i]}"}
    done
}

# Quotes what COMPREPLY holds for a word that begins with the quote $1, or with none.
_tovren_quote() {
    local i text IFS=$'\n'
    [[ ${COMPREPLY[*]} == *[!A-Za-z0-9_./=:@%+,$'\n'-]* ]] || return 0 # none needs it, among thousands
    for i in "${!COMPREPLY[@]}"; do
        text=${COMPREPLY[i]}
        case $1 in
        \') text=${text//\'/\'\\\'\'} ;;
        \") text=${text//\\/\\\\} text=${text//\"/\\\"} text=${text//\$/\\\$} text=${text//\`/\\\`} ;;
        *) [[ $text != *[!A-Za-z0-9_./=:@%+,-]* ]] || printf -v text %q "$text" ;;
        esac
        COMPREPLY[i]=$text
    done
}

_tovren() {
    local words=() answer=() i
    COMPREPLY=()
    _tovren_words
    mapfile -t answer <<<"$("${1/#\~\//$HOME/}" __complete --quoted -- "${words[@]:1}" 2>/dev/null)"
    case ${answer[0]} in
    files*) compopt -o default ;;
    folders*) compopt -o dirnames ;;
    words)
        local current=${words[${#words[@]} - 1]}
        local decided=${current:0:${#current} - ${#2}} quote=
        case $decided in *[\'\"]) quote=${decided: -1} decided=${decided%?} ;; esac
        answer=("${answer[@]:1}")
        COMPREPLY=("${answer[@]%%$'\t'*}")
        if [[ -n $decided ]]; then
            for i in "${!COMPREPLY[@]}"; do
                COMPREPLY[i]=${COMPREPLY[i]:${#decided}}
            done
        fi
        _tovren_quote "$quote"
        [[ "${COMPREPLY[0]}" != *= ]] || compopt -o nospace
        ;;
    esac
}

complete -o nosort -F _tovren tovren
