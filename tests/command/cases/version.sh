tovren --version
tovren flash list --version
