// A program without a task: it lends its reading of the blocks' tables to the test programs.
int main() {
    return 0;
}
