/** The room left of every lane, in pixels: lanes of all kinds share one time axis. */
export const gutter = 64;

/** Where a moment is in a period, in per cent. @param {number} moment @param {import('./history_query.js').Period} period */
export const place = (moment, { from, to }) => Math.min(100, Math.max(0, (moment - from) / (to - from) * 100));
