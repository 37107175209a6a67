# Help on standard error. command_fault is the same command with a group of its own.
command_fault
