# SPDX-License-Identifier: MIT
# Completion of pcdctl in fish.

function __pcdctl_complete
    set -l words (commandline -opc)
    # Nothing of the line is run: quotes are removed, variables stay as they are.
    set -l current (commandline -ct | string replace -ra '["\'\\\\]' '')
    for line in ($words[1] __complete $words[2..-1] "$current" 2>/dev/null)
        if test "$line" = :files
            set -l start (string match -r '^--[^=]*=' -- "$current")
            for path in (__fish_complete_path (string replace -- "$start" '' "$current"))
                echo "$start$path"
            end
        else
            echo $line
        end
    end
end

complete -c pcdctl -f -a '(__pcdctl_complete)'
