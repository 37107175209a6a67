# Completion of tovren for fish. The command knows what may stand where (tovren __complete).

function __tovren_complete
    set -l words (commandline -opc | string replace -r '^~/' "$HOME/")
    set -l tovren $words[1]
    set -e words[1]
    # An open quote is fish's to close.
    set -l current (commandline -ct | string replace -r '^["\']' '' | string unescape | string replace -r '^~/' "$HOME/")
    set -l answer ($tovren __complete -- $words "$current" 2>/dev/null)
    set -l before (string replace -r '^\w+ ' '' -- "$answer[1]")
    set -l rest (string sub -s (math (string length -- "$before") + 1) -- "$current")
    switch "$answer[1]"
        case 'files*'
            string replace -r '^' -- "$before" (__fish_complete_path "$rest")
        case 'folders*'
            string replace -r '^' -- "$before" (__fish_complete_directories "$rest" '')
        case words
            string join \n -- $answer[2..]
    end
end

complete -c tovren -f -a '(__tovren_complete)'
