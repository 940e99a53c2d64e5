// node d3_time.mjs D3-FOLDER SIZES ROUNDS
//
// The same as layout_time by d3-hierarchy, on nodes that are made beforehand and
// towards squares as ours. Prints two medians: of its layout, treemap() with
// squarify, and of squarify's part of that alone.
import { readFileSync } from "node:fs";
import { pathToFileURL } from "node:url";

const [d3Folder, sizesFile, roundsText] = process.argv.slice(2);
const { hierarchy, treemap, treemapSquarify } = await import(
    pathToFileURL(`${d3Folder}/node_modules/d3-hierarchy/src/index.js`)
);
const sizes = readFileSync(sizesFile, "utf8").trim().split("\n").map(Number);
const root = hierarchy({ children: sizes.map((size) => ({ size })) }).sum((item) => item.size ?? 0);
const squarify = treemapSquarify.ratio(1);
const layout = treemap().tile(squarify).size([1600, 900]);

function median(run) {
    const times = [];
    for (let i = 0; i < Number(roundsText); ++i) {
        const start = performance.now();
        run();
        times.push(performance.now() - start);
    }
    if (!root.children.every((node) => node.x1 >= node.x0 && node.y1 >= node.y0))
        throw new Error("not every item was laid out");
    times.sort((a, b) => a - b);
    return times[times.length >> 1].toFixed(3);
}

const wholeLayout = median(() => layout(root));
console.log(wholeLayout, median(() => squarify(root, 0, 0, 1600, 900)));
