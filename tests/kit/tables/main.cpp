// A program that does nothing: the test programs link its compiled tables of the blocks.
int main() {
    return 0;
}
