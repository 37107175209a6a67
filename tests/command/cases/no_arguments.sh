# Help on standard error.
tovren
