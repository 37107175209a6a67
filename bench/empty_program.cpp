// Does nothing. What its process takes is the start of the libraries that it is linked to.
int main() {}
