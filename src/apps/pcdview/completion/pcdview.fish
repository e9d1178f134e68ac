# SPDX-License-Identifier: MIT
# Completion of pcdview in fish.

complete -c pcdview -k -f -a '(__fish_complete_suffix .json)'
complete -c pcdview -s h -l help -d 'Show this help.'
complete -c pcdview -l version -d 'Show the version.'
complete -c pcdview -l sdk -r -F -a 'auto sim' -d 'Camera SDK'
complete -c pcdview -l scene -x -k -a '(__fish_complete_suffix .json)' -d 'Show the simulated cameras of this scene file.'
complete -c pcdview -l plugin-path -r -F -d 'Look for device plugins in this folder or file first.'
complete -c pcdview -s c -l camera -x -d 'The camera to open'
complete -c pcdview -l lang -x -a 'en ru' -d 'Language'
complete -c pcdview -l theme -x -a 'system light dark' -d 'Colours for this run'
complete -c pcdview -l log-level -x -a 'debug info warning error off' -d 'Which log records to show'
complete -c pcdview -l trace -r -F -d 'Write all calls of the camera SDK to this new file, for a report of a fault.'
complete -c pcdview -l trace-frames -d 'With --trace: also write the pixels of all frames, to FILE.frames.'
complete -c pcdview -l grab -r -F -d 'Save a screenshot of the window to this file, then exit.'
complete -c pcdview -l after -x -d 'Milliseconds to wait before the screenshot'
