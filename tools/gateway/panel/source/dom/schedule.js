// However fast changes arrive, the page is drawn at most ten times a second; the first one is drawn at once.
const shortestPause = 100;

/**
 * Gathers names until the next drawing.
 * @param {(names: Set<string>) => void} draw
 * @returns {(name: string) => void}
 */
export function drawSoon(draw) {
    let names = new Set();
    let drawn = -shortestPause;
    let waiting = false;

    function run() {
        waiting = false;
        drawn = performance.now();
        const due = names;
        names = new Set();
        draw(due);
    }

    return (name) => {
        names.add(name);
        if (!waiting) {
            waiting = true;
            setTimeout(() => requestAnimationFrameOrTimer(run), Math.max(0, drawn + shortestPause - performance.now()));
        }
    };
}

/** A hidden page has no animation frames, but its title and its notices still count. @param {() => void} run */
function requestAnimationFrameOrTimer(run) {
    if (document.hidden) {
        run();
    } else {
        requestAnimationFrame(run);
    }
}
